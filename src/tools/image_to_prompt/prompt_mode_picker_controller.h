#pragma once

#include "core/picker/choice_picker_controller.h"
#include "tools/image_to_prompt/prompt_mode.h"

/// Asks for the style of one prompt. Main thread only.
class PromptModePickerController final : public ChoicePickerController {
 public:
  using Chosen = std::function<void(std::optional<PromptMode>)>;

  PromptModePickerController(LauncherOpener& launcher, PanelFactory makePanel);

  /// `chosen` is called once, with nothing when the user thought better of it.
  void chooseMode(Chosen chosen);
};
