#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include "base/clock.h"
#include "core/hotkeys/key_press.h"
#include "tools/frequent_clis/palette_model.h"

class CommandStore;
class KeystrokeSender;
class LauncherOpener;
class SettingsOpener;

/// The palette's window, as its controller knows it.
class CLIPalettePanel {
 public:
  virtual ~CLIPalettePanel() = default;

  /// Shows the panel on the active screen, with the keyboard. Called again while it is shown, it stays.
  virtual void present() = 0;
  /// Does what the first `present` would otherwise have to do before the panel is seen.
  virtual void warmUp() = 0;
  virtual void dismiss() = 0;
};

/// The palette's flow: keys change the model, choosing types the command, editing opens its settings. Owns the panel,
/// which is made on first use and then kept. Main thread only.
class CLIPaletteController {
 public:
  /// Lets the panel's disappearance settle, so that the text reaches the application behind it.
  static constexpr std::chrono::milliseconds kTypingDelay{120};

  struct Services {
    CommandStore& store;
    KeystrokeSender& sender;
    Clock& clock;
    SettingsOpener& settings;
    LauncherOpener& launcher;
  };
  /// Makes the panel, which draws `model()`, hands its keys to `handleKey` and calls `hide` when it loses the keyboard.
  using PanelFactory = std::function<std::unique_ptr<CLIPalettePanel>(CLIPaletteController&)>;

  CLIPaletteController(Services services, PanelFactory makePanel);

  PaletteModel& model() { return model_; }
  bool isShown() const { return shown_; }

  /// Makes the panel and warms it up ahead of its first show; for a moment when nobody waits.
  void prepare();
  void show();
  void hide();
  /// Whether the key was used; never while hidden.
  bool handleKey(const KeyPress& key);
  /// Hides the palette and types the command into what has the focus then.
  void choose(CLICommand command);
  /// Hides the palette and opens the settings page on the command.
  void edit(const CLICommand& command);

 private:
  bool handleCommandKey(const KeyPress& key);
  void escape();
  CLIPalettePanel& panel();

  Services services_;
  PanelFactory makePanel_;
  PaletteModel model_;
  std::unique_ptr<CLIPalettePanel> panel_;
  bool shown_ = false;
  bool returnsToLauncher_ = false;
  /// Lives as long as the controller: one command chosen soon after another drops neither.
  Job typing_ = Job::start();
};
