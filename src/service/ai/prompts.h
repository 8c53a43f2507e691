#pragma once

#include <optional>

#include "service/ai/provider.h"

/// Every text that a provider is told beside what the user wrote, in one place.
namespace prompts {

/// What /v1/text does with a text.
struct Transform {
  /// "improve", "enhance-prompt", "shorten" or "fix-grammar"; empty: by the instruction.
  QString action;
  /// In the user's words.
  QString instruction;
};

/// Nothing: there is no such action.
std::optional<Question> transform(const Transform& transform, const QString& text);
/// `history`: question and answer by turns. The pictures go with the first question.
Question answer(const QString& question, std::vector<Turn> history, const std::vector<Picture>& pictures);
/// A prompt that would make what the picture shows. Nothing: `mode` is not "ui", "general" or "image".
std::optional<Question> describe(const QString& mode, const Picture& picture);
/// What the picture's maker is told.
QString drawing(const Drawing& drawing);

}  // namespace prompts
