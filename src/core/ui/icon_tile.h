#pragma once

#include <QColor>
#include <QRectF>
#include <QString>

class QPainter;
struct Theme;

/// The small rounded square at the start of rows and in grids that carries a symbol or a brand's monogram.
struct IconTile {
  enum class Ground { card, selection };

  /// Symbol name; empty for a monogram.
  QString symbol;
  /// One or two letters on the brand's colour, used without a symbol.
  QString monogram;
  /// Colour of the symbol, or of the monogram's ground; invalid means the accent.
  QColor color;

  void paint(QPainter& painter, const QRectF& rect, const Theme& theme, Ground ground = Ground::card) const;
};
