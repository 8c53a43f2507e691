#pragma once

#include "core/picker/choice_picker_controller.h"
#include "tools/text_transform/text_transform_mode.h"

using TextModePickerModel = ChoicePickerModel;

/// Asks what to do with the selected text. Main thread only.
class TextModePickerController final : public ChoicePickerController {
 public:
  /// The chosen mode; nothing when the user thought better of it.
  using Chosen = std::function<void(std::optional<TextTransformMode>)>;

  TextModePickerController(LauncherOpener& launcher, PanelFactory makePanel);

  /// As ChoicePickerController::choose.
  void choose(Chosen chosen);
};
