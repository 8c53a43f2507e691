#pragma once

#include <QString>
#include <QStringList>

#include <map>
#include <optional>

#include "core/hotkeys/hotkey.h"
#include "core/settings/store.h"

/// The application's own record, "settings.json". A missing key reads as empty, false, or manual order.
struct AppSettings {
  static constexpr const char* kStoreName = "SettingsStore";

  /// The user's re-bindings by tool id; a tool that is absent uses its default, an empty value means no shortcut.
  std::map<QString, std::optional<Hotkey>> hotkeys;
  QStringList disabledTools;
  bool onboardingCompleted = false;
  bool privacyAccepted = false;
  bool onboardingReachedPermissions = false;
  /// The manual order of the grid.
  QStringList toolOrder;
  /// In pin order.
  QStringList pinnedTools;
  /// Raw value of ToolSortMode.
  QString toolSortMode;
  std::map<QString, int> toolUsage;
  /// Seconds since 1970 by tool id.
  std::map<QString, double> toolLastUsed;

  bool operator==(const AppSettings&) const = default;
  void read(JsonReader& reader);
  void write(QJsonObject& object) const;
};

using SettingsStore = Store<AppSettings>;
