#pragma once

#include <QColor>
#include <QFont>

/// The only place of colours, radii and sizes. Lengths and fonts in logical pixels.
struct Theme {
  bool dark = false;
  /// Ground of ordinary windows.
  QColor window;
  QColor card;
  QColor text;
  QColor secondary;
  QColor accent;
  /// The selected row and filled controls: an accent deep enough for white text.
  QColor selection;
  /// The selected row of a list that the keyboard is not in.
  QColor idleSelection;
  /// Text on `selection`.
  QColor onAccent;
  QColor success;
  QColor failure;
  /// One-pixel separators and the card's edge.
  QColor hairline;
  /// The edge of controls, which must be seen by itself.
  QColor edge;
  /// Key caps and fields.
  QColor raised;
  /// A row under the pointer.
  QColor hover;
  /// The track of a switch that is off, the thumb of a scroll bar.
  QColor switchOff;
  QColor shadow;

  static constexpr int kCardRadius = 14;
  static constexpr int kRowRadius = 8;
  static constexpr int kKeyCapRadius = 5;
  static constexpr int kRowHeight = 44;
  static constexpr int kIconTile = 28;
  static constexpr int kGrid = 8;
  /// Transparent margin around a panel's card, room for its shadow.
  static constexpr int kPanelMargin = 48;

  static const Theme& light();
  static const Theme& darkTheme();

  /// Inter where it is installed, else the system's font.
  static QFont fieldFont();
  static QFont rowFont();
  static QFont detailFont();
  /// What stands by itself on a small capsule.
  static QFont calloutFont();
  static QFont sizeLabelFont();
  static QFont keyCapFont();
  static QFont monospacedFont();
};

class QWidget;

/// The theme in force for `widget`: dark when its palette is.
const Theme& themeOf(const QWidget& widget);
