#pragma once

#include "core/ui/palette_window.h"

class OpenProjectController;

/// The projects palette's panel.
class OpenProjectWindow final : public PaletteWindow {
 public:
  OpenProjectWindow(PanelWindow& native, OpenProjectController& controller);
};
