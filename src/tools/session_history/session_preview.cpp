#include "tools/session_history/session_preview.h"

#include "tools/session_history/prompt_text.h"
#include "tools/session_history/prompt_words.h"
#include "tools/session_history/transcript_parsers.h"

namespace {

/// The user's own words in one line of the agent's; empty for every other line.
QString promptIn(std::string_view line, SessionAgent agent, LineDecoder& decoder) {
  if (agent == SessionAgent::claude) {
    const auto words = claudeWords(line, decoder);
    return words && !words->byMachine ? firstPrompt(words->texts, kPreviewedPrompt) : QString();
  }
  for (std::size_t form = 0; form < kCodexForms; ++form)
    if (const QString prompt = firstPrompt(codexWords(line, form, decoder), kPreviewedPrompt); !prompt.isEmpty())
      return prompt;
  return {};
}

}  // namespace

SessionPreview readPreview(const VibeSession& session) {
  SessionPreview preview;
  ParserScratch scratch;
  if (!scratch.reader.open(session.transcript)) return preview;
  while (preview.firstPrompt.isEmpty()) {
    const auto line = scratch.reader.nextHeadLine();
    if (!line) break;
    preview.firstPrompt = promptIn(*line, session.agent, scratch.decoder);
  }
  while (preview.lastPrompt.isEmpty()) {
    const auto line = scratch.reader.previousTailLine();
    if (!line) break;
    preview.lastPrompt = promptIn(*line, session.agent, scratch.decoder);
  }
  return preview;
}
