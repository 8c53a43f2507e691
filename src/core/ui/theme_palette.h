#pragma once

#include <QPalette>

struct Theme;

/// The theme as a palette for the Fusion style, so that ordinary windows match the panels.
QPalette themePalette(const Theme& theme);
