#pragma once

#include <chrono>

#include "base/clock.h"
#include "core/palette/palette_controller.h"
#include "tools/frequent_clis/palette_model.h"

class CommandStore;
class CommandTyper;
class SettingsOpener;

/// The palette's flow: choosing types the command, editing opens its settings. Main thread only.
class CLIPaletteController final : public PaletteController {
 public:
  /// Lets the panel's disappearance settle, so that the text reaches the application behind it.
  static constexpr std::chrono::milliseconds kTypingDelay{120};

  struct Services {
    CommandStore& store;
    CommandTyper& typer;
    Clock& clock;
    SettingsOpener& settings;
    LauncherOpener& launcher;
  };

  CLIPaletteController(Services services, PanelFactory makePanel);

  PaletteModel& model() { return model_; }

  /// Hides the palette and types the command into what has the focus then.
  void choose(CLICommand command);
  /// Hides the palette and opens the settings page on the command.
  void edit(const CLICommand& command);

 protected:
  PaletteListModel& list() override { return model_; }
  void begin() override;
  void rehearse() override { begin(); }
  void chooseSelected(const KeyPress& key) override;
  bool handleOwnKey(const KeyPress& key) override;

 private:
  Services services_;
  PaletteModel model_;
  /// Lives as long as the controller: one command chosen soon after another drops neither.
  Job typing_ = Job::start();
};
