#pragma once

#include <QRect>

#include <span>

/// One screen: all of it, and the part that no panel of the desktop covers.
struct MenuScreen {
  QRect geometry;
  QRect available;
};

/// Where the menu's card goes and how large it may be, in global coordinates: beside the tray icon on the screen's
/// side of the panel it sits in, and within `available`. An empty `icon` means that the tray does not tell: then at the
/// pointer when that stands on a panel, as after a click on the icon; else at the top right of the pointer's screen.
/// Empty without a screen.
QRect menuCard(QSize wanted, const QRect& icon, QPoint pointer, std::span<const MenuScreen> screens);
