#pragma once

#include "core/settings/store.h"
#include "services/image_source.h"
#include "tools/image_to_prompt/prompt_mode.h"

/// What Image to Prompt describes and how, "Promptify/settings.json".
struct PromptifySettings {
  static constexpr const char* kStoreName = "PromptifySettings";

  PromptStyleSetting style = PromptStyleSetting::general;
  ImageSource source = ImageSource::clipboard;

  bool operator==(const PromptifySettings&) const = default;
  void read(JsonReader& reader);
  void write(QJsonObject& object) const;
};

using PromptifyStore = Store<PromptifySettings>;
