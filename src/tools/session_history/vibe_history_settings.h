#pragma once

#include "core/settings/store.h"

/// How many conversations the palette lists.
inline constexpr int kSessionLimit = 20;

/// Which agents' transcripts are read, "VibeHistory/settings.json". Both keys are required: with one missing, both have
/// their defaults.
struct VibeHistorySettings {
  static constexpr const char* kStoreName = "VibeHistoryStore";

  bool includeClaude = true;
  bool includeCodex = true;

  bool operator==(const VibeHistorySettings&) const = default;
  void read(JsonReader& reader);
  void write(QJsonObject& object) const;
};

using VibeHistoryStore = Store<VibeHistorySettings>;
