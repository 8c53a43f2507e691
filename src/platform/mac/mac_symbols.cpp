#include "platform/mac/mac_api.h"
#include "platform/system_symbol.h"

QImage systemSymbol(const QString& name, int pixels) {
  const QByteArray symbol = name.toUtf8();
  QSizeF size;
  if (!mac::symbolSize(symbol.constData(), &size.rwidth(), &size.rheight()) || size.isEmpty()) return {};
  const QSize fitted = size.scaled(pixels, pixels, Qt::KeepAspectRatio).toSize().expandedTo({1, 1});
  QImage image(fitted, QImage::Format_RGBA8888_Premultiplied);
  image.fill(Qt::transparent);
  const auto width = static_cast<std::uint32_t>(fitted.width());
  const bool drawn =
      mac::drawSymbol(symbol.constData(), width, static_cast<std::uint32_t>(fitted.height()), image.bits());
  return drawn ? image : QImage();
}
