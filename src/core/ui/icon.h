#pragma once

#include <QColor>
#include <QPixmap>
#include <QRectF>
#include <QString>
#include <QStringList>

class QPainter;

/// Draws the symbol of that name ("terminal.fill") in one colour, as large as fits into `rect`. An unknown name draws a
/// dotted square, so that a missing icon is seen in the first screenshot.
void paintSymbol(QPainter& painter, const QString& name, const QRectF& rect, const QColor& color);
/// The same as a pixmap of `size` logical pixels at `devicePixelRatio`.
QPixmap symbolPixmap(const QString& name, int size, const QColor& color, qreal devicePixelRatio);
/// The symbol names that there are icons for.
QStringList symbolNames();
