#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "core/hotkeys/key_press.h"
#include "core/presenters/palette_presenter.h"
#include "tools/text_transform/custom_instruction_model.h"

/// Asks for an instruction of the user's own on a panel with a text area: ⌘↩ takes it, Escape or a click elsewhere
/// cancels. Owns the panel, which is made on first use and then kept. Main thread only.
class CustomInstructionController {
 public:
  /// The instruction without the white space around it; nothing when the user thought better of it or wrote none.
  using Completion = std::function<void(std::optional<QString>)>;
  /// Makes the panel, which edits the model's text, hands its keys to `handleKey`, its buttons to `submit` and `cancel`
  /// and calls `cancel` when it loses the keyboard.
  using PanelFactory = std::function<std::unique_ptr<PalettePresenter>()>;

  explicit CustomInstructionController(PanelFactory makePanel) : makePanel_(std::move(makePanel)) {}

  CustomInstructionModel& model() { return model_; }
  bool isShown() const { return completion_ != nullptr; }

  /// Makes the panel and warms it up ahead of its first show; for a moment when nobody waits.
  void prepare();
  /// Shows the panel, empty. `completion` is called exactly once, when the panel is gone. A panel that is open already
  /// stays as it is, and does not call it.
  void ask(Completion completion);
  /// Does nothing while hidden, as do the following.
  void submit();
  void cancel();
  /// Whether the key was used.
  bool handleKey(const KeyPress& key);

 private:
  PalettePresenter& panel();
  void finish(const std::optional<QString>& instruction);

  PanelFactory makePanel_;
  std::unique_ptr<PalettePresenter> panel_;
  CustomInstructionModel model_;
  /// There while the panel is open.
  Completion completion_;
};
