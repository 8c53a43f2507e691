#pragma once

#include "core/ui/palette_window.h"

class CLIPaletteController;
class CLIPaletteView;

/// The commands palette's panel; clicks and the context menu go to the controller.
class CLIPaletteWindow final : public PaletteWindow {
 public:
  CLIPaletteWindow(PanelWindow& native, CLIPaletteController& controller);

 private:
  CLIPaletteWindow(PanelWindow& native, CLIPaletteController& controller, CLIPaletteView* view);
};
