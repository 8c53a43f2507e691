#include "tools/session_history/vibe_history_settings.h"

#include <optional>

using namespace Qt::StringLiterals;

void VibeHistorySettings::read(JsonReader& reader) {
  VibeHistorySettings whole{.includeClaude = true, .includeCodex = true};
  if (!reader.read("includeClaude"_L1, whole.includeClaude) || !reader.read("includeCodex"_L1, whole.includeCodex))
    return;
  *this = whole;
}

void VibeHistorySettings::write(QJsonObject& object) const {
  object.insert("includeClaude"_L1, includeClaude);
  object.insert("includeCodex"_L1, includeCodex);
}
