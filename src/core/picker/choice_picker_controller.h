#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "core/hotkeys/key_press.h"
#include "core/picker/choice_picker_model.h"
#include "core/presenters/palette_presenter.h"

class LauncherOpener;

/// Lets the user choose one of a few rows on a small panel: arrows and Return, a digit, or a click; Escape or a click
/// elsewhere cancels. Owns the panel, which is made on first use and then kept. Main thread only.
class ChoicePickerController {
 public:
  /// The chosen row; nothing when the user thought better of it.
  using Completion = std::function<void(std::optional<int> row)>;
  /// Makes the panel, which draws the model, hands its keys to `handleKey`, its clicks to `chooseRow` and calls
  /// `cancel` when it loses the keyboard.
  using PanelFactory = std::function<std::unique_ptr<PalettePresenter>()>;

  /// `toolID`: whose tile the launcher highlights when Escape leads back to it.
  ChoicePickerController(std::vector<Choice> choices, LauncherOpener& launcher, QString toolID, PanelFactory makePanel);

  ChoicePickerModel& model() { return model_; }
  bool isShown() const { return completion_ != nullptr; }

  /// Makes the panel and warms it up ahead of its first show; for a moment when nobody waits.
  void prepare();
  /// Whether Escape reopens the launcher, because the tool was started from there. Set it before each `choose`.
  void setReturnsToLauncher(bool returnsToLauncher) { returnsToLauncher_ = returnsToLauncher; }
  /// Shows the rows, the first of them highlighted. `completion` is called exactly once, when the panel is gone. A
  /// picker that is open already stays as it is, and does not call it.
  void choose(Completion completion);
  /// Does nothing while hidden, as do the following.
  void cancel();
  void chooseRow(int row);
  /// Whether the key was used.
  bool handleKey(const KeyPress& key);

 private:
  PalettePresenter& panel();
  void finish(std::optional<int> row);
  void escape();
  std::optional<int> rowNumbered(const KeyPress& key) const;

  LauncherOpener& launcher_;
  QString toolID_;
  PanelFactory makePanel_;
  std::unique_ptr<PalettePresenter> panel_;
  ChoicePickerModel model_;
  /// There while the panel is open.
  Completion completion_;
  bool returnsToLauncher_ = false;
};
