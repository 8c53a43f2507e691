#include "core/ui/progress_marks.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr int kTop = 90 * 16;
constexpr int kWholeTurn = 360 * 16;

void paintArc(QPainter& painter, const QRectF& rect, const QPen& pen, int start, int span) {
  const double inset = pen.widthF() / 2;
  painter.setPen(pen);
  painter.setBrush(Qt::NoBrush);
  painter.drawArc(rect.adjusted(inset, inset, -inset, -inset), start, span);
}

int sixteenths(double turns) { return static_cast<int>(std::lround(turns * kWholeTurn)); }

}  // namespace

void CountdownRing::paint(QPainter& painter, const QRectF& rect) const {
  const double width = 1.75;
  paintArc(painter, rect, QPen(track, width), 0, kWholeTurn);
  const double left = std::clamp(remaining, 0.0, 1.0);
  if (left > 0) paintArc(painter, rect, QPen(color, width, Qt::SolidLine, Qt::RoundCap), kTop, sixteenths(left));
}

void Spinner::paint(QPainter& painter, const QRectF& rect) const {
  const double width = std::max(1.75, rect.width() / 10);
  paintArc(painter, rect, QPen(track, width), 0, kWholeTurn);
  paintArc(painter, rect, QPen(color, width, Qt::SolidLine, Qt::RoundCap), kTop - sixteenths(turn), sixteenths(-0.28));
}
