#pragma once

#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QString>

#include <optional>

#include "platform/screen_grabber.h"

// Where the parts of a selection are. Lengths in logical pixels, y downwards, unless a name says otherwise.

/// The rectangle with these two corners, whichever way it was dragged.
QRectF spannedRect(QPointF from, QPointF to);
/// Whether a drag is meant as one: wider and taller than 4.
bool isLargeEnough(QSizeF size);
/// `pointer` held inside the view, which keeps the mouse when it is dragged beyond. The pointer stands on pixels, not
/// between them: on the last ones it counts as the edge, or nobody could select these.
QPointF withinView(QPointF pointer, QSizeF view, double scale);

/// In native pixels, to the nearest; as large as the rectangle times `scale`. None when the product is not finite or
/// too large to be a picture.
std::optional<QRect> pixelRect(const QRectF& points, double scale);
/// The part of `globalRect` that lies on the screen; none without one, or by the rule of `pixelRect`.
std::optional<ScreenArea> screenArea(const QRectF& globalRect, const QRect& screen, double scale);

/// Where the pill's top left corner is: 18 right of the pointer and 18 below it, but 8 away from every edge.
QPointF pillOrigin(QPointF pointer, QSizeF pill, QSizeF view);
/// "640 × 480"
QString sizeText(QSize pixels);
/// The box of a size label around a text of that size, centred 6 below the selection; above it, then inside, where
/// the view ends too early.
QRectF sizeLabelBox(const QRectF& selection, QSizeF text, QSizeF view);
