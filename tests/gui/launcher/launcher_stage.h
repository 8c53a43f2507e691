#pragma once

#include <QSettings>

#include <memory>

#include "core/ui/launcher/tool_grid.h"
#include "core/ui/launcher/tool_launcher_controller.h"
#include "core/ui/launcher/tool_launcher_panel.h"
#include "support/fake_panel_window.h"
#include "support/world.h"

/// The launcher with its real panel over a given native side.
struct LauncherStage : ToolWorld {
  explicit LauncherStage(PanelWindow& nativeSide) : native(nativeSide) {}

  void type(const QString& text) {
    for (const QChar character : text) controller.handleKey({.characters = character});
  }
  void key(std::uint32_t code, bool command = false) { controller.handleKey({.keyCode = code, .command = command}); }
  PalettePanel& window() const { return panel->window(); }
  ToolGrid& grid() const { return *window().findChild<ToolGrid*>(); }
  ToolTile& tile(QLatin1StringView toolID) const { return *grid().tile(toolID); }

  PanelWindow& native;
  FakeSystem desktop;
  QSettings defaults{directory.filePath(QStringLiteral("defaults.ini")), QSettings::IniFormat};
  ToolLauncherPanel* panel = nullptr;
  ToolLauncherController controller{{registry, network, sounds, clock}, [this](ToolLauncherController& owner) {
                                      auto made = std::make_unique<ToolLauncherPanel>(
                                          owner, ToolLauncherPanel::Services{native, desktop, defaults});
                                      panel = made.get();
                                      return made;
                                    }};
};

/// Outlives the panel, which gives its keyboard back when it goes.
struct FakeNative {
  FakePanelWindow fakeNative;
};

/// The launcher over a fake native side, already shown.
struct ShownLauncher : FakeNative, LauncherStage {
  ShownLauncher() : LauncherStage(fakeNative) { controller.show(); }
};
