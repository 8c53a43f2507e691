#pragma once

#include "core/presenters/palette_presenter.h"
#include "core/ui/palette_panel.h"

class CustomInstructionController;
class CustomInstructionView;

/// The instruction panel on the screen.
class CustomInstructionPanel final : public PalettePresenter {
 public:
  static constexpr QSize kSize{576, 316};

  CustomInstructionPanel(PanelWindow& native, CustomInstructionController& controller);

  void present() override;
  void warmUp() override { panel_.warmUp(); }
  void dismiss() override { panel_.dismiss(); }

  PalettePanel& panel() { return panel_; }

 private:
  PalettePanel panel_;
  CustomInstructionView* view_;
};
