#include "core/ui/icon.h"

#include <QDir>
#include <QFile>
#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>

#include <algorithm>
#include <cmath>

#include "platform/system_symbol.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto kFolder = ":/symbols/"_L1;

QByteArray drawing(const QString& name, const QColor& color) {
  QFile file(kFolder + name + ".svg"_L1);
  if (!file.open(QIODevice::ReadOnly)) return {};
  return file.readAll().replace("currentColor", color.name(QColor::HexRgb).toLatin1());
}

void paintMissing(QPainter& painter, const QRectF& rect, const QColor& color) {
  painter.setPen(QPen(color, 1, Qt::DotLine));
  painter.drawRect(rect.adjusted(1, 1, -1, -1));
}

/// The shape in another colour, in the middle of a square.
void paintShape(QPainter& painter, const QImage& shape, const QRect& square, const QColor& color) {
  QRect place = shape.rect();
  place.moveCenter(square.center());
  painter.drawImage(place.topLeft(), shape);
  painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
  painter.fillRect(square, color);
}

QPixmap render(const QString& name, int pixels, const QColor& color) {
  QPixmap pixmap(pixels, pixels);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  if (const QImage shape = systemSymbol(name, pixels); !shape.isNull()) {
    paintShape(painter, shape, pixmap.rect(), color);
    return pixmap;
  }
  painter.setOpacity(color.alphaF());
  QSvgRenderer renderer(drawing(name, color));
  if (renderer.isValid())
    renderer.render(&painter, pixmap.rect());
  else
    paintMissing(painter, pixmap.rect(), color);
  return pixmap;
}

}  // namespace

QPixmap symbolPixmap(const QString& name, int size, const QColor& color, qreal devicePixelRatio) {
  const int pixels = std::max(1, static_cast<int>(std::lround(size * devicePixelRatio)));
  const QString key = u"symbol/%1/%2/%3"_s.arg(name).arg(pixels).arg(color.rgba());
  QPixmap pixmap;
  if (!QPixmapCache::find(key, &pixmap)) {
    pixmap = render(name, pixels, color);
    QPixmapCache::insert(key, pixmap);
  }
  pixmap.setDevicePixelRatio(devicePixelRatio);
  return pixmap;
}

void paintSymbol(QPainter& painter, const QString& name, const QRectF& rect, const QColor& color) {
  const qreal ratio = painter.device()->devicePixelRatioF();
  const int size = static_cast<int>(std::floor(std::min(rect.width(), rect.height())));
  const QPointF corner = rect.center() - QPointF(size, size) / 2;
  // On whole device pixels, or the strokes blur.
  const QPointF snapped(std::round(corner.x() * ratio) / ratio, std::round(corner.y() * ratio) / ratio);
  painter.drawPixmap(snapped, symbolPixmap(name, size, color, ratio));
}

QStringList symbolNames() {
  QStringList names = QDir(kFolder).entryList({u"*.svg"_s}, QDir::Files, QDir::Name);
  for (QString& name : names) name.chop(4);
  return names;
}
