#include "core/picker/choice_picker_controller.h"

#include <utility>

#include "core/presenters/launcher_opener.h"

ChoicePickerController::ChoicePickerController(std::vector<Choice> choices, LauncherOpener& launcher, QString toolID,
                                               PanelFactory makePanel)
    : launcher_(launcher), toolID_(std::move(toolID)), makePanel_(std::move(makePanel)), model_(std::move(choices)) {}

PalettePresenter& ChoicePickerController::panel() {
  if (!panel_) panel_ = makePanel_();
  return *panel_;
}

void ChoicePickerController::prepare() {
  if (!panel_) panel().warmUp();
}

void ChoicePickerController::choose(Completion completion) {
  if (isShown()) return;
  completion_ = std::move(completion);
  model_.select(0);
  panel().present();
}

void ChoicePickerController::cancel() { finish(std::nullopt); }

void ChoicePickerController::chooseRow(int row) {
  if (row >= 0 && row < model_.rowCount()) finish(row);
}

bool ChoicePickerController::handleKey(const KeyPress& key) {
  if (!isShown()) return false;
  switch (key.keyCode) {
    case keycode::kReturn:
    case keycode::kKeypadEnter:
      chooseRow(model_.selectionIndex());
      return true;
    case keycode::kEscape:
      escape();
      return true;
    case keycode::kDown:
      model_.moveSelection(+1);
      return true;
    case keycode::kUp:
      model_.moveSelection(-1);
      return true;
    default:
      break;
  }
  const auto row = rowNumbered(key);
  if (row) chooseRow(*row);
  return row.has_value();
}

std::optional<int> ChoicePickerController::rowNumbered(const KeyPress& key) const {
  if (key.command || key.control || key.option || key.characters.size() != 1) return std::nullopt;
  const int row = key.characters.front().digitValue() - 1;
  return row >= 0 && row < model_.rowCount() ? std::optional(row) : std::nullopt;
}

void ChoicePickerController::escape() {
  const bool returnsToLauncher = returnsToLauncher_;
  cancel();
  if (returnsToLauncher) launcher_.showLauncher(toolID_);
}

/// The panel is gone before the completion runs, which may well open the next one.
void ChoicePickerController::finish(std::optional<int> row) {
  if (!isShown()) return;
  const Completion completion = std::exchange(completion_, nullptr);
  panel_->dismiss();
  completion(row);
}
