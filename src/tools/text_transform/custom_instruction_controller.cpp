#include "tools/text_transform/custom_instruction_controller.h"

#include <utility>

PalettePresenter& CustomInstructionController::panel() {
  if (!panel_) panel_ = makePanel_();
  return *panel_;
}

void CustomInstructionController::prepare() {
  if (!panel_) panel().warmUp();
}

void CustomInstructionController::ask(Completion completion) {
  if (isShown()) return;
  completion_ = std::move(completion);
  model_.setText({});
  panel().present();
}

void CustomInstructionController::submit() {
  const QString instruction = model_.text().trimmed();
  finish(instruction.isEmpty() ? std::nullopt : std::optional(instruction));
}

void CustomInstructionController::cancel() { finish(std::nullopt); }

bool CustomInstructionController::handleKey(const KeyPress& key) {
  if (!isShown()) return false;
  const bool isReturn = key.keyCode == keycode::kReturn || key.keyCode == keycode::kKeypadEnter;
  if (key.keyCode == keycode::kEscape)
    cancel();
  else if (isReturn && key.command)
    submit();
  else
    return false;
  return true;
}

void CustomInstructionController::finish(const std::optional<QString>& instruction) {
  if (!isShown()) return;
  const Completion completion = std::exchange(completion_, nullptr);
  panel_->dismiss();
  // Nothing of it stays in memory longer than it is needed.
  model_.setText({});
  completion(instruction);
}
