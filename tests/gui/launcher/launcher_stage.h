#pragma once

#include <QSettings>

#include <memory>

#include "core/ui/launcher/tool_grid.h"
#include "core/ui/launcher/tool_launcher_controller.h"
#include "core/ui/launcher/tool_launcher_panel.h"
#include "support/fake_panel_window.h"
#include "support/tool_world.h"

/// The launcher with its real panel over a given native side.
struct LauncherStage : ToolWorld {
  explicit LauncherStage(PanelWindow& nativeSide) : native(nativeSide) {}

  void type(const QString& text) {
    for (const QChar character : text) controller.handleKey({.characters = character});
  }
  void key(std::uint32_t code, bool command = false) { controller.handleKey({.keyCode = code, .command = command}); }
  ToolGrid& grid() const { return *panel->window().findChild<ToolGrid*>(); }
  ToolTile& tile(QLatin1StringView toolID) const { return *grid().tile(toolID); }

  PanelWindow& native;
  QSettings defaults{folder.filePath(QStringLiteral("defaults.ini")), QSettings::IniFormat};
  ToolLauncherPanel* panel = nullptr;
  ToolLauncherController controller{{registry, network, sounds, clock}, [this](ToolLauncherController& owner) {
                                      auto made = std::make_unique<ToolLauncherPanel>(
                                          owner, ToolLauncherPanel::Services{native, system, defaults});
                                      panel = made.get();
                                      return made;
                                    }};
};
