#include "cli/config_settings.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

std::optional<bool> flag(const QString& text) {
  if (text == "on"_L1 || text == "true"_L1) return true;
  if (text == "off"_L1 || text == "false"_L1) return false;
  return std::nullopt;
}

template <bool Preferences::* Flag>
QString readFlag(const ConfigStores& stores) {
  return stores.preferences.value().*Flag ? u"on"_s : u"off"_s;
}

template <bool Preferences::* Flag>
bool writeFlag(ConfigStores& stores, const QString& text) {
  const auto value = flag(text);
  if (value) stores.preferences.update([value](Preferences& preferences) { preferences.*Flag = *value; });
  return value.has_value();
}

QString readAppearance(const ConfigStores& stores) { return rawValue(stores.preferences.value().appearance); }

bool writeAppearance(ConfigStores& stores, const QString& text) {
  const auto value = appAppearance(text);
  if (value) stores.preferences.update([value](Preferences& preferences) { preferences.appearance = *value; });
  return value.has_value();
}

QString readDuration(const ConfigStores& stores) { return QString::number(stores.preferences.value().toastDuration); }

bool writeDuration(ConfigStores& stores, const QString& text) {
  bool isNumber = false;
  const double seconds = text.toDouble(&isNumber);
  // "nan" is a number too, and neither below nor above anything.
  const bool fits =
      seconds >= double(kMinimumToastDuration.count()) && seconds <= double(kMaximumToastDuration.count());
  if (!isNumber || !fits) return false;
  stores.preferences.update([seconds](Preferences& preferences) { preferences.toastDuration = seconds; });
  return true;
}

template <auto Store>
QString readSource(const ConfigStores& stores) {
  return rawValue((stores.*Store).value().source);
}

template <auto Store>
bool writeSource(ConfigStores& stores, const QString& text) {
  const auto value = imageSource(text);
  if (value) (stores.*Store).update([value](auto& settings) { settings.source = *value; });
  return value.has_value();
}

QString readStyle(const ConfigStores& stores) { return rawValue(stores.promptify.value().style); }

bool writeStyle(ConfigStores& stores, const QString& text) {
  const auto value = promptStyle(text);
  if (value) stores.promptify.update([value](PromptifySettings& settings) { settings.style = *value; });
  return value.has_value();
}

QString readOutput(const ConfigStores& stores) { return rawValue(stores.textTransform.value().output); }

bool writeOutput(ConfigStores& stores, const QString& text) {
  const auto value = transformOutput(text);
  if (value) stores.textTransform.update([value](AITextTransformSettings& settings) { settings.output = *value; });
  return value.has_value();
}

constexpr std::array kSettings = {
    ConfigSetting{"appearance"_L1, "system or dark"_L1, readAppearance, writeAppearance},
    ConfigSetting{"toast-duration"_L1, "2 to 60, in seconds"_L1, readDuration, writeDuration},
    ConfigSetting{"swipe-to-dismiss"_L1, "on or off"_L1, readFlag<&Preferences::swipeToDismiss>,
                  writeFlag<&Preferences::swipeToDismiss>},
    ConfigSetting{"sound-on-complete"_L1, "on or off"_L1, readFlag<&Preferences::soundOnComplete>,
                  writeFlag<&Preferences::soundOnComplete>},
    ConfigSetting{"share-usage-stats"_L1, "on or off"_L1, readFlag<&Preferences::shareUsageStats>,
                  writeFlag<&Preferences::shareUsageStats>},
    ConfigSetting{"image-to-url-source"_L1, "clipboard or liveSelection"_L1, readSource<&ConfigStores::uplink>,
                  writeSource<&ConfigStores::uplink>},
    ConfigSetting{"image-to-prompt-source"_L1, "clipboard or liveSelection"_L1, readSource<&ConfigStores::promptify>,
                  writeSource<&ConfigStores::promptify>},
    ConfigSetting{"image-to-prompt-style"_L1, "ui, general, image or ask"_L1, readStyle, writeStyle},
    ConfigSetting{"text-transform-output"_L1, "replace or clipboard"_L1, readOutput, writeOutput},
};

}  // namespace

std::span<const ConfigSetting> configSettings() { return kSettings; }

const ConfigSetting* configSetting(const QString& name) {
  const auto found = std::ranges::find(kSettings, name, &ConfigSetting::name);
  return found == kSettings.end() ? nullptr : &*found;
}
