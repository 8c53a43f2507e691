#include "tools/image_to_prompt/prompt_mode_picker_controller.h"

#include "tools/image_to_prompt/promptify_tool.h"

namespace {

std::vector<Choice> choices() {
  std::vector<Choice> rows;
  for (const PromptModeInfo& mode : promptModes()) rows.push_back({mode.symbol, mode.label, mode.description});
  return rows;
}

}  // namespace

PromptModePickerController::PromptModePickerController(LauncherOpener& launcher, PanelFactory makePanel)
    : ChoicePickerController(choices(), launcher, kPromptifyID, std::move(makePanel)) {}

void PromptModePickerController::chooseMode(Chosen chosen) {
  choose([chosen = std::move(chosen)](std::optional<int> row) {
    chosen(row ? std::optional(promptModes()[static_cast<std::size_t>(*row)].mode) : std::nullopt);
  });
}
