#pragma once

#include <QString>
#include <QStringList>

#include <expected>
#include <span>

#include "core/settings/app_preferences.h"
#include "core/settings/folders.h"
#include "tools/image_to_prompt/promptify_settings.h"
#include "tools/image_to_url/uplink_settings.h"
#include "tools/text_transform/ai_text_transform_settings.h"

/// The stores whose settings the command line shows and sets.
struct ConfigStores {
  explicit ConfigStores(const Folders& folders)
      : preferences(folders.file(QStringLiteral("app-settings.json"))),
        uplink(folders.file(QStringLiteral("Uplink/settings.json"))),
        textTransform(folders.file(QStringLiteral("AITextTransform/settings.json"))),
        promptify(folders.file(QStringLiteral("Promptify/settings.json"))) {}

  AppPreferences preferences;
  UplinkStore uplink;
  AITextTransformStore textTransform;
  PromptifyStore promptify;
};

/// One setting by the name it has on the command line.
struct ConfigSetting {
  QLatin1StringView name;
  /// What it may be, in words.
  QLatin1StringView values;
  QString (*read)(const ConfigStores& stores);
  /// False for a text that it cannot be.
  bool (*write)(ConfigStores& stores, const QString& text);
};

std::span<const ConfigSetting> configSettings();
/// Null when there is none of that name.
const ConfigSetting* configSetting(const QString& name);
