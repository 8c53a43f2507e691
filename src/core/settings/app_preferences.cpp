#include "core/settings/app_preferences.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr std::array kAppearances = {
    std::pair{AppAppearance::system, QLatin1StringView("system")},
    std::pair{AppAppearance::dark, QLatin1StringView("dark")},
};

}  // namespace

QString rawValue(AppAppearance appearance) {
  for (const auto& [value, text] : kAppearances)
    if (value == appearance) return text;
  return {};
}

std::optional<AppAppearance> appAppearance(const QString& rawValue) {
  for (const auto& [value, text] : kAppearances)
    if (text == rawValue) return value;
  return std::nullopt;
}

bool decode(const QJsonValue& value, AppAppearance& out) {
  const auto appearance = appAppearance(value.toString());
  if (appearance) out = *appearance;
  return appearance.has_value();
}

void Preferences::read(JsonReader& reader) {
  reader.read("appearance"_L1, appearance);
  reader.read("toastDuration"_L1, toastDuration);
  reader.read("swipeToDismiss"_L1, swipeToDismiss);
  reader.read("soundOnComplete"_L1, soundOnComplete);
  reader.read("shareUsageStats"_L1, shareUsageStats);
}

void Preferences::write(QJsonObject& object) const {
  object.insert("appearance"_L1, rawValue(appearance));
  object.insert("toastDuration"_L1, toastDuration);
  object.insert("swipeToDismiss"_L1, swipeToDismiss);
  object.insert("soundOnComplete"_L1, soundOnComplete);
  object.insert("shareUsageStats"_L1, shareUsageStats);
}

std::chrono::milliseconds toastDuration(const Preferences& preferences) {
  const std::chrono::duration<double> wanted(preferences.toastDuration);
  const std::chrono::duration<double> least(kMinimumToastDuration);
  const std::chrono::duration<double> most(kMaximumToastDuration);
  return std::chrono::duration_cast<std::chrono::milliseconds>(std::clamp(wanted, least, most));
}
