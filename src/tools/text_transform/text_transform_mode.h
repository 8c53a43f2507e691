#pragma once

#include <QString>

#include <optional>
#include <span>

/// What is to be done with a text.
enum class TextTransformMode { improve, enhancePrompt, shorten, fixGrammar, custom };

/// How one mode is named.
struct TextTransformModeNames {
  TextTransformMode mode;
  /// Stable.
  QLatin1StringView id;
  /// What the picker's row says.
  QStringView label;
  /// Symbol name.
  QLatin1StringView symbol;
  /// What the service is told to do; empty: what the user's own instruction says.
  QLatin1StringView action;
};

/// In the order of the picker's rows.
std::span<const TextTransformModeNames> textTransformModes();
const TextTransformModeNames& namesOf(TextTransformMode mode);
/// None for a text that no mode sends as its action.
std::optional<TextTransformMode> textTransformMode(const QString& action);
