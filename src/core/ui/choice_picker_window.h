#pragma once

#include "core/presenters/palette_presenter.h"
#include "core/ui/choice_picker_view.h"
#include "core/ui/palette_panel.h"

/// A choice picker's panel on the screen. Keys and the loss of the keyboard go to the controller.
class ChoicePickerWindow final : public PalettePresenter {
 public:
  /// `size` includes the transparent margin of Theme::kPanelMargin on every side.
  ChoicePickerWindow(PanelWindow& native, ChoicePickerController& controller, const ChoicePickerView::Texts& texts,
                     QSize size);

  void present() override;
  void warmUp() override { panel_.warmUp(); }
  void dismiss() override { panel_.dismiss(); }

  PalettePanel& panel() { return panel_; }

 private:
  PalettePanel panel_;
};
