#pragma once

#include <functional>
#include <memory>

#include "core/hotkeys/key_press.h"
#include "core/palette/palette_list_model.h"
#include "core/presenters/palette_presenter.h"

class LauncherOpener;

/// The flow that every palette has: shown over the user's application, keys filter and move, Return chooses, Escape
/// goes back to where the palette came from. Owns the panel, which is made on first use and then kept. Main thread
/// only.
class PaletteController {
 public:
  /// Makes the panel, which draws the model, hands its keys to `handleKey` and calls `hide` when it loses the keyboard.
  using PanelFactory = std::function<std::unique_ptr<PalettePresenter>()>;

  /// `toolID`: whose tile the launcher highlights when Escape leads back to it.
  PaletteController(LauncherOpener& launcher, QString toolID, PanelFactory makePanel);
  virtual ~PaletteController() = default;
  PaletteController(const PaletteController&) = delete;
  PaletteController& operator=(const PaletteController&) = delete;

  bool isShown() const { return shown_; }
  /// Makes the panel and warms it up ahead of its first show; for a moment when nobody waits.
  void prepare();
  void show();
  void hide();
  /// Whether the key was used; never while hidden.
  bool handleKey(const KeyPress& key);

 protected:
  virtual PaletteListModel& list() = 0;
  /// Fills the model, at every show.
  virtual void begin() = 0;
  /// Fills the model for the warm-up, so that rows are drawn; nothing that takes time.
  virtual void rehearse() {}
  /// Return on the selected row, with the key that was pressed for its modifiers.
  virtual void chooseSelected(const KeyPress& key) = 0;
  /// Keys of this palette alone; asked before the common ones.
  virtual bool handleOwnKey([[maybe_unused]] const KeyPress& key) { return false; }
  /// Goes on with a flow that left the screen meanwhile: Escape leads where it led before.
  void showAgain();
  /// What Escape does.
  virtual void escape();
  /// The panel is gone.
  virtual void ended() {}

 private:
  bool handleCommonKey(const KeyPress& key);
  PalettePresenter& panel();

  LauncherOpener& launcher_;
  QString toolID_;
  PanelFactory makePanel_;
  std::unique_ptr<PalettePresenter> panel_;
  bool shown_ = false;
  bool returnsToLauncher_ = false;
};
