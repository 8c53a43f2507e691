#pragma once

#include "core/ui/palette_window.h"

class VibeHistoryPaletteController;

/// The history palette's panel.
class VibeHistoryPaletteWindow final : public PaletteWindow {
 public:
  VibeHistoryPaletteWindow(PanelWindow& native, VibeHistoryPaletteController& controller);
};
