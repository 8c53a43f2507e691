#include "core/settings/app_settings.h"

using namespace Qt::StringLiterals;

namespace {

bool decode(const QJsonValue& value, std::optional<Hotkey>& out) {
  if (value.isNull()) {
    out.reset();
    return true;
  }
  Hotkey hotkey;
  if (!::decode(value, hotkey)) return false;
  out = hotkey;
  return true;
}

/// The re-bindings need their own walk: a null entry is a value here, not a missing one.
struct Rebindings {
  std::map<QString, std::optional<Hotkey>>& map;
};

bool decode(const QJsonValue& value, Rebindings& out) {
  if (!value.isObject()) return false;
  out.map.clear();
  bool whole = true;
  const QJsonObject object = value.toObject();
  for (auto it = object.begin(); it != object.end(); ++it) {
    std::optional<Hotkey> hotkey;
    if (decode(it.value(), hotkey))
      out.map.emplace(it.key(), hotkey);
    else
      whole = false;
  }
  return whole;
}

QJsonObject encodeRebindings(const std::map<QString, std::optional<Hotkey>>& rebindings) {
  QJsonObject object;
  for (const auto& [id, hotkey] : rebindings)
    object.insert(id, hotkey ? encode(*hotkey) : QJsonValue(QJsonValue::Null));
  return object;
}

template <class Value>
QJsonObject encodeMap(const std::map<QString, Value>& map) {
  QJsonObject object;
  for (const auto& [id, value] : map) object.insert(id, value);
  return object;
}

}  // namespace

void AppSettings::read(JsonReader& reader) {
  Rebindings rebindings{hotkeys};
  reader.read("hotkeys"_L1, rebindings);
  reader.read("disabledTools"_L1, disabledTools);
  reader.read("onboardingCompleted"_L1, onboardingCompleted);
  reader.read("privacyAccepted"_L1, privacyAccepted);
  reader.read("onboardingReachedPermissions"_L1, onboardingReachedPermissions);
  reader.read("toolOrder"_L1, toolOrder);
  reader.read("pinnedTools"_L1, pinnedTools);
  reader.read("toolSortMode"_L1, toolSortMode);
  reader.read("toolUsage"_L1, toolUsage);
  reader.read("toolLastUsed"_L1, toolLastUsed);
}

void AppSettings::write(QJsonObject& object) const {
  object.insert("hotkeys"_L1, encodeRebindings(hotkeys));
  object.insert("disabledTools"_L1, QJsonArray::fromStringList(disabledTools));
  object.insert("onboardingCompleted"_L1, onboardingCompleted);
  object.insert("privacyAccepted"_L1, privacyAccepted);
  object.insert("onboardingReachedPermissions"_L1, onboardingReachedPermissions);
  object.insert("toolOrder"_L1, QJsonArray::fromStringList(toolOrder));
  object.insert("pinnedTools"_L1, QJsonArray::fromStringList(pinnedTools));
  object.insert("toolSortMode"_L1, toolSortMode);
  object.insert("toolUsage"_L1, encodeMap(toolUsage));
  object.insert("toolLastUsed"_L1, encodeMap(toolLastUsed));
}
