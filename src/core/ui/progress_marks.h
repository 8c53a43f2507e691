#pragma once

#include <QColor>
#include <QRectF>

class QPainter;

/// A ring that drains clockwise: `remaining` 1 is whole, 0 gone.
struct CountdownRing {
  double remaining;
  QColor color;
  QColor track;

  void paint(QPainter& painter, const QRectF& rect) const;
};

/// An arc on its way round, `turn` of a whole turn from the top.
struct Spinner {
  double turn;
  QColor color;
  QColor track;

  void paint(QPainter& painter, const QRectF& rect) const;
};
