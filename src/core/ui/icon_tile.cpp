#include "core/ui/icon_tile.h"

#include <QPainter>

#include <cmath>

#include "core/ui/icon.h"
#include "core/ui/theme.h"

namespace {

/// White or near black, whichever is easier to read on `ground`.
QColor readableOn(const QColor& ground) {
  const double luminance = 0.299 * ground.redF() + 0.587 * ground.greenF() + 0.114 * ground.blueF();
  return luminance > 0.6 ? QColor(0x1B1D21) : QColor(Qt::white);
}

QColor translucent(QColor color, double alpha) {
  color.setAlphaF(static_cast<float>(alpha));
  return color;
}

}  // namespace

void IconTile::paint(QPainter& painter, const QRectF& rect, const Theme& theme, Ground ground) const {
  const bool selected = ground == Ground::selection;
  const QColor tint = color.isValid() ? color : theme.accent;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  const bool isMonogram = symbol.isEmpty();
  painter.setBrush(isMonogram ? tint
                   : selected ? QColor(255, 255, 255, 46)
                              : translucent(tint, theme.dark ? 0.18 : 0.12));
  const double radius = std::round(rect.width() * 0.25);
  painter.drawRoundedRect(rect, radius, radius);
  if (isMonogram) {
    // Brands are as dark as a dark card, or as light as a light one: the edge keeps the tile a tile.
    painter.setPen(QPen(theme.hairline, 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(rect.adjusted(0.5, 0.5, -0.5, -0.5), radius - 0.5, radius - 0.5);
    QFont font = Theme::rowFont();
    font.setPointSizeF(font.pointSizeF() * rect.width() / Theme::kIconTile * (monogram.size() > 1 ? 0.85 : 1.0));
    font.setWeight(QFont::Bold);
    painter.setFont(font);
    painter.setPen(readableOn(tint));
    painter.drawText(rect, Qt::AlignCenter, monogram);
  } else {
    const double inset = std::round(rect.width() * 0.18);
    paintSymbol(painter, symbol, rect.adjusted(inset, inset, -inset, -inset), selected ? theme.onAccent : tint);
  }
  painter.restore();
}
