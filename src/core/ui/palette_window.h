#pragma once

#include "core/presenters/palette_presenter.h"
#include "core/ui/palette_panel.h"

class PaletteController;
class PaletteView;

/// A palette's panel on the screen. Keys and the loss of the keyboard go to the controller.
class PaletteWindow : public PalettePresenter {
 public:
  /// The card of 620 × 380 with its margin on every side.
  static constexpr QSize kSize{716, 476};

  /// Takes ownership of `view`, whose title is the panel's. `size` includes the transparent margins.
  PaletteWindow(PanelWindow& native, PaletteView* view, PaletteController& controller, QSize size = kSize);

  void present() override;
  void warmUp() override { panel_.warmUp(); }
  void dismiss() override;

  PalettePanel& panel() { return panel_; }

 private:
  PalettePanel panel_;
};
