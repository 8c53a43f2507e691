#pragma once

#include <array>

#include "core/hotkeys/hotkey.h"

/// The application's own actions, in the order in which their shortcuts are registered.
enum class AppAction { openSettings, openToolSettings, openShortcutSettings, toggleLauncher };

struct AppShortcut {
  AppAction action;
  Hotkey hotkey;
  QLatin1StringView name;
  /// Symbol name.
  QLatin1StringView icon;
  /// One sentence: what it does.
  QLatin1StringView summary;
  /// What `vantle summon` knows it by.
  QLatin1StringView target;
};

/// Not re-bindable and not stored; no tool may default to one of these.
inline constexpr std::array kAppShortcuts = {
    AppShortcut{AppAction::openSettings,
                {43, carbon::kControl | carbon::kOption},
                QLatin1StringView("Settings"),
                QLatin1StringView("gearshape"),
                QLatin1StringView("Opens the settings."),
                QLatin1StringView("settings")},
    AppShortcut{AppAction::openToolSettings,
                {17, carbon::kControl | carbon::kOption},
                QLatin1StringView("Tools"),
                QLatin1StringView("square.grid.3x3"),
                QLatin1StringView("Opens the settings of the tools."),
                QLatin1StringView("settings-tools")},
    AppShortcut{AppAction::openShortcutSettings,
                {4, carbon::kControl | carbon::kOption},
                QLatin1StringView("Shortcuts"),
                QLatin1StringView("keyboard"),
                QLatin1StringView("Opens the settings of the shortcuts."),
                QLatin1StringView("settings-shortcuts")},
    AppShortcut{AppAction::toggleLauncher,
                {49, carbon::kControl | carbon::kOption},
                QLatin1StringView("Launcher"),
                QLatin1StringView("square.grid.2x2"),
                QLatin1StringView("Shows all tools in one grid."),
                QLatin1StringView("launcher")},
};
