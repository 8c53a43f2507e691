#pragma once

#include <QColor>
#include <QPen>

class QImage;
class QPainter;
class QRectF;

/// What is around a thumbnail, and behind one that is transparent.
struct ThumbnailFrame {
  QColor ground;
  QPen edge;
};

/// The middle of `image`, as much as `place` takes, a square with round corners. The painter's hints are the caller's.
void paintThumbnail(QPainter& painter, const QRectF& place, const QImage& image, const ThumbnailFrame& frame);
