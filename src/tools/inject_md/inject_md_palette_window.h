#pragma once

#include "core/ui/palette_window.h"

class InjectMDPaletteController;

/// The panel that asks for file and project.
class InjectMDPaletteWindow final : public PaletteWindow {
 public:
  InjectMDPaletteWindow(PanelWindow& native, InjectMDPaletteController& controller);
};
