#pragma once

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

#include "core/hotkeys/app_shortcuts.h"

class HotkeyCenter;
class NetworkMonitor;
class SystemInfo;
class ToolRegistry;

/// Where what is known about shortcuts comes from.
struct ShortcutSources {
  ToolRegistry& registry;
  HotkeyCenter& hotkeys;
  NetworkMonitor& network;
  const SystemInfo& system;
};

/// One shortcut, of a tool or of the application itself, as people are told about it.
struct ShortcutEntry {
  /// The tool's id; empty for the application's own.
  QString toolID = {};
  /// Meaningful for the application's own only.
  AppAction action = AppAction::openSettings;
  QString name = {};
  QString icon = {};
  QString summary = {};
  std::optional<Hotkey> hotkey = {};
  /// The combination does not reach its owner: switched off, or somebody else has it.
  bool isBlocked = false;
  /// It needs the network and there is none.
  bool isOffline = false;
  /// What stands in the way, a sentence each, the network first.
  QStringList obstacles = {};

  bool operator==(const ShortcutEntry&) const = default;
  bool isApplication() const { return toolID.isEmpty(); }
};

/// The tools in registration order, then the application's own.
std::vector<ShortcutEntry> shortcutEntries(const ShortcutSources& sources);

/// Why a combination does not reach its tool, or may not: somebody else has it too, or the desktop has given another
/// one for it. Empty when it works as it stands.
QString shortcutObstacle(const ShortcutSources& sources, const QString& toolID);
/// The same for one of the application's own.
QString shortcutObstacle(const ShortcutSources& sources, const AppShortcut& shortcut);
/// Whether another program has a tool's combination, so that a different one is wanted.
bool isTakenElsewhere(const ShortcutSources& sources, const QString& toolID);
/// Whether another program has one of the application's own.
bool isTakenElsewhere(const ShortcutSources& sources, const AppShortcut& shortcut);
