#pragma once

#include "core/ui/palette_window.h"

class BoilerplatesPaletteController;

/// The boilerplates palette's panel; what it asks for follows the model's step.
class BoilerplatesPaletteWindow final : public PaletteWindow {
 public:
  BoilerplatesPaletteWindow(PanelWindow& native, BoilerplatesPaletteController& controller);
};
