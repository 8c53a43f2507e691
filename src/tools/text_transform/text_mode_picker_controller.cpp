#include "tools/text_transform/text_mode_picker_controller.h"

#include "tools/text_transform/ai_text_transform_tool.h"

namespace {

std::vector<Choice> choices() {
  std::vector<Choice> rows;
  for (const TextTransformModeNames& names : textTransformModes())
    rows.push_back({names.symbol, names.label.toString()});
  return rows;
}

}  // namespace

TextModePickerController::TextModePickerController(LauncherOpener& launcher, PanelFactory makePanel)
    : ChoicePickerController(choices(), launcher, kAITextTransformID, std::move(makePanel)) {}

void TextModePickerController::choose(Chosen chosen) {
  ChoicePickerController::choose([chosen = std::move(chosen)](std::optional<int> row) {
    chosen(row ? std::optional(textTransformModes()[static_cast<std::size_t>(*row)].mode) : std::nullopt);
  });
}
