#pragma once

#include "core/presenters/palette_presenter.h"
#include "core/ui/palette_panel.h"

class PromptifyResultController;

/// The result card on the screen, as high as its prompt. It can be dragged, and stays while the user turns elsewhere.
class PromptifyResultPanel final : public PalettePresenter {
 public:
  PromptifyResultPanel(PanelWindow& native, PromptifyResultController& controller);

  void present() override;
  void warmUp() override {}
  void dismiss() override { panel_.dismiss(); }

  PalettePanel& panel() { return panel_; }

 private:
  PalettePanel panel_;
};
