#pragma once

#include <QColor>
#include <QRectF>

class QPainter;

/// The soft shadow of a rounded card, painted around `card` only; it reaches at most `kReach` beyond it.
struct CardShadow {
  static constexpr int kReach = 45;

  QColor color;
  int radius;

  void paint(QPainter& painter, const QRectF& card) const;
};
