#pragma once

#include <QApplication>

#include "core/ui/control_style.h"
#include "core/ui/theme.h"
#include "core/ui/theme_palette.h"

/// Widgets look as they do in the program, in the light appearance.
inline void wearTheme() {
  QApplication::setStyle(new ControlStyle);
  QApplication::setFont(Theme::detailFont());
  QApplication::setPalette(themePalette(Theme::light()));
}
