#pragma once

#include "core/ui/palette_panel.h"
#include "tools/frequent_clis/cli_palette_controller.h"

/// The palette's panel on the screen. Keys, clicks and the loss of the keyboard go to the controller.
class CLIPaletteWindow final : public CLIPalettePanel {
 public:
  CLIPaletteWindow(PanelWindow& native, CLIPaletteController& controller);

  void present() override;
  void warmUp() override;
  void dismiss() override;

  PalettePanel& panel() { return panel_; }

 private:
  PalettePanel panel_;
};
