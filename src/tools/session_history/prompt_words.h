#pragma once

#include <QStringList>

#include <optional>
#include <string_view>

#include "tools/session_history/line_decoder.h"
#include "tools/session_history/vibe_session.h"

/// The texts of one prompt in a line, as they stand in the transcript.
struct PromptWords {
  QStringList texts;
  /// Whether the agent wrote them in the user's name.
  bool byMachine = false;
};

/// The prompt in a line of Claude Code's; none when it holds none, or one of a sub-agent.
std::optional<PromptWords> claudeWords(std::string_view line, LineDecoder& decoder);

/// Codex has written prompts in three forms over time; an earlier form wins over a later one.
inline constexpr std::size_t kCodexForms = 3;

/// The prompt of that form in a line of Codex's, what editors put in front of it taken away; none when empty.
QStringList codexWords(std::string_view line, std::size_t form, LineDecoder& decoder);

/// What was said in a line, by the user or by the agent, as it stands in the transcript: for searching.
QStringList spokenTexts(std::string_view line, SessionAgent agent, LineDecoder& decoder);
