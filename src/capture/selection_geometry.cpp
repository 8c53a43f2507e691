#include "capture/selection_geometry.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kSmallestDrag = 4;
constexpr double kPillDistance = 18;
constexpr double kPillMargin = 8;
constexpr double kLabelPadding = 12;
constexpr double kLabelDistance = 6;
/// Pictures have at most this many pixels a side, as in QImage.
constexpr double kLargestSide = 32767;

/// As std::clamp, but the lower end holds where the ends have changed places: the view is smaller than what is in it.
double held(double value, double low, double high) { return std::max(low, std::min(value, high)); }

bool isSide(double value) { return std::isfinite(value) && value >= 0 && value <= kLargestSide; }

int nearest(double value) { return static_cast<int>(std::lround(value)); }

}  // namespace

QRectF spannedRect(QPointF from, QPointF to) { return QRectF(from, to).normalized(); }

bool isLargeEnough(QSizeF size) { return size.width() > kSmallestDrag && size.height() > kSmallestDrag; }

QPointF withinView(QPointF pointer, QSizeF view, double scale) {
  const double pixel = 1 / scale;
  // Logical positions of pixels are no exact fractions at every scale.
  const double last = pixel * 1.01;
  const auto along = [last](double position, double length) {
    return position >= length - last ? length : held(position, 0, length);
  };
  return {along(pointer.x(), view.width()), along(pointer.y(), view.height())};
}

std::optional<QRect> pixelRect(const QRectF& points, double scale) {
  const double width = points.width() * scale;
  const double height = points.height() * scale;
  const QPointF origin = points.topLeft() * scale;
  if (!isSide(width) || !isSide(height) || !isSide(std::abs(origin.x())) || !isSide(std::abs(origin.y())))
    return std::nullopt;
  return QRect(nearest(origin.x()), nearest(origin.y()), nearest(width), nearest(height));
}

std::optional<ScreenArea> screenArea(const QRectF& globalRect, const QRect& screen, double scale) {
  const QRectF points = globalRect.intersected(screen).translated(-screen.topLeft());
  const auto pixels = pixelRect(points, scale);
  if (!pixels || pixels->isEmpty()) return std::nullopt;
  return ScreenArea{screen, points, *pixels};
}

QPointF pillOrigin(QPointF pointer, QSizeF pill, QSizeF view) {
  return {held(pointer.x() + kPillDistance, kPillMargin, view.width() - pill.width() - kPillMargin),
          held(pointer.y() + kPillDistance, kPillMargin, view.height() - pill.height() - kPillMargin)};
}

QString sizeText(QSize pixels) {
  return QStringLiteral("%1 × %2").arg(QString::number(pixels.width()), QString::number(pixels.height()));
}

QRectF sizeLabelBox(const QRectF& selection, QSizeF text, QSizeF view) {
  const QSizeF box(text.width() + kLabelPadding, text.height() + kLabelPadding);
  const double x = held(selection.center().x() - box.width() / 2, 0, view.width() - box.width());
  const double below = selection.bottom() + kLabelDistance;
  const double above = selection.top() - kLabelDistance - box.height();
  const double inside = selection.bottom() - kLabelDistance - box.height();
  if (below + box.height() <= view.height()) return {{x, below}, box};
  return {{x, above >= 0 ? above : inside}, box};
}
