#pragma once

#include <QLatin1StringView>

#include <array>
#include <optional>

#include "core/presenters/window_opener.h"

/// What the menu offers beside the tools, in its order.
enum class MenuEntry { usage, keyboardShortcuts, settings, whatsNew, quit };

struct MenuEntryInfo {
  MenuEntry entry;
  /// With %1 for the program's version.
  const char16_t* title;
  QLatin1StringView icon;
  /// The window that the entry opens, for those that do just that.
  std::optional<AppWindow> window = std::nullopt;
};

inline constexpr std::array kMenuEntries = {
    MenuEntryInfo{MenuEntry::usage, u"Usage", QLatin1StringView("gauge.with.dots.needle.67percent"), AppWindow::usage},
    MenuEntryInfo{MenuEntry::keyboardShortcuts, u"Keyboard Shortcuts", QLatin1StringView("keyboard"),
                  AppWindow::keyboardShortcuts},
    MenuEntryInfo{MenuEntry::settings, u"Settings…", QLatin1StringView("gearshape"), AppWindow::settings},
    MenuEntryInfo{MenuEntry::whatsNew, u"Vantle %1 — What's New", QLatin1StringView("sparkles"), AppWindow::whatsNew},
    MenuEntryInfo{MenuEntry::quit, u"Quit Vantle", QLatin1StringView("power")},
};
