#pragma once

#include <QTemporaryDir>

#include "support/fake_clock.h"
#include "support/fake_platform.h"
#include "support/fake_presenters.h"
#include "tools/frequent_clis/cli_palette_controller.h"
#include "tools/frequent_clis/command_store.h"
#include "tools/keystrokes/command_typer.h"
#include "tools/keystrokes/keystroke_sender.h"

/// Everything the commands palette touches, with a panel of the test's choice.
struct CLIWorld {
  explicit CLIWorld(CLIPaletteController::PanelFactory makePanel)
      : palette({store, typer, clock, settings, launcher}, std::move(makePanel)) {}

  CLICommand add(const QString& title, const QString& command, bool pressReturn = false) {
    const QUuid id = store.add();
    store.replace({id, title, command, pressReturn, std::nullopt});
    return *store.find(id);
  }

  QTemporaryDir dir;
  FakeClock clock;
  CommandStore store{Folders{dir.path()}, clock};
  FakeKeyEvents events;
  FakePermissions permissions;
  KeystrokeSender sender{events, permissions};
  FakePasteboard pasteboard;
  FakeToasts toasts;
  CommandTyper typer{sender, pasteboard, toasts};
  FakeSettingsOpener settings;
  FakeLauncherOpener launcher;
  CLIPaletteController palette;
};
