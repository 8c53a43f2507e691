#include "tools/asking/thumbnail_painting.h"

#include <QImage>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

#include "core/ui/theme.h"

namespace {

constexpr qreal kRadius = Theme::kRowRadius - 2;

QRectF middleSquare(const QImage& image) {
  const int side = std::min(image.width(), image.height());
  return {(image.width() - side) / 2.0, (image.height() - side) / 2.0, double(side), double(side)};
}

}  // namespace

void paintThumbnail(QPainter& painter, const QRectF& place, const QImage& image, const ThumbnailFrame& frame) {
  QPainterPath shape;
  shape.addRoundedRect(place, kRadius, kRadius);
  painter.fillPath(shape, frame.ground);
  painter.setClipPath(shape);
  painter.drawImage(place, image, middleSquare(image));
  painter.setClipping(false);
  painter.strokePath(shape, frame.edge);
}
