#pragma once

#include <QString>

#include <chrono>
#include <optional>

#include "core/settings/store.h"

/// There is no forced light mode: "system" follows the desktop, "dark" stays dark.
enum class AppAppearance { system, dark };

QString rawValue(AppAppearance appearance);
/// None for a text that names no appearance.
std::optional<AppAppearance> appAppearance(const QString& rawValue);
bool decode(const QJsonValue& value, AppAppearance& out);

/// Appearance and notifications, "app-settings.json".
struct Preferences {
  static constexpr const char* kStoreName = "AppSettings";

  AppAppearance appearance = AppAppearance::system;
  /// How long a toast stays, in seconds.
  double toastDuration = 10;
  bool swipeToDismiss = true;
  bool soundOnComplete = true;
  /// Consent to anonymous usage events; off until the user says otherwise.
  bool shareUsageStats = false;

  bool operator==(const Preferences&) const = default;
  void read(JsonReader& reader);
  void write(QJsonObject& object) const;
};

using AppPreferences = Store<Preferences>;

/// Bounds of the toast duration: a file edited by hand can neither hide every toast nor keep one for good.
inline constexpr std::chrono::seconds kMinimumToastDuration{2};
inline constexpr std::chrono::seconds kMaximumToastDuration{60};

/// The preferred duration of a toast, within the bounds.
std::chrono::milliseconds toastDuration(const Preferences& preferences);
