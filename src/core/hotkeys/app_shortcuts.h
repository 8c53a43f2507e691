#pragma once

#include <array>

#include "core/hotkeys/hotkey.h"

/// The application's own actions, in the order in which their shortcuts are registered.
enum class AppAction { openSettings, openToolSettings, openShortcutSettings, toggleLauncher };

struct AppShortcut {
  AppAction action;
  Hotkey hotkey;
  QLatin1StringView name;
};

/// Not re-bindable and not stored; no tool may default to one of these.
inline constexpr std::array kAppShortcuts = {
    AppShortcut{AppAction::openSettings, {43, carbon::kControl | carbon::kOption}, QLatin1StringView("Settings")},
    AppShortcut{AppAction::openToolSettings, {17, carbon::kControl | carbon::kOption}, QLatin1StringView("Tools")},
    AppShortcut{
        AppAction::openShortcutSettings, {4, carbon::kControl | carbon::kOption}, QLatin1StringView("Shortcuts")},
    AppShortcut{AppAction::toggleLauncher, {49, carbon::kControl | carbon::kOption}, QLatin1StringView("Launcher")},
};
