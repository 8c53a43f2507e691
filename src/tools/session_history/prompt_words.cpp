#include "tools/session_history/prompt_words.h"

#include <array>

#include "tools/session_history/prompt_text.h"
#include "tools/session_history/transcript_reader.h"

using namespace Qt::StringLiterals;

namespace {

using Record = LineDecoder::Record;

/// The texts in an array of content parts whose type is `type`.
QStringList partTexts(const std::optional<simdjson::dom::element>& content, const QString& type) {
  QStringList texts;
  simdjson::dom::array parts;
  if (!content || content->get(parts) != simdjson::SUCCESS) return texts;
  for (const simdjson::dom::element part : parts) {
    Record object;
    if (part.get(object) == simdjson::SUCCESS && text(object, {"type"}) == type)
      texts.append(text(object, {"text"}).value_or(QString()));
  }
  return texts;
}

QStringList ofUserMessage(const Record& record) {
  if (text(record, {"payload", "type"}) != u"user_message") return {};
  return {text(record, {"payload", "message"}).value_or(QString())};
}

QStringList ofCompletedItem(const Record& record) {
  if (text(record, {"payload", "type"}) != u"item_completed") return {};
  if (text(record, {"payload", "item", "type"}) != u"UserMessage") return {};
  return partTexts(member(record, {"payload", "item", "content"}), u"text"_s);
}

/// The agent's own instructions come in the user's name.
QStringList ofResponseItem(const Record& record) {
  if (text(record, {"payload", "role"}) != u"user") return {};
  QStringList texts = partTexts(member(record, {"payload", "content"}), u"input_text"_s);
  texts.removeIf([](const QString& words) { return words.trimmed().startsWith("# AGENTS.md"_L1); });
  return texts;
}

/// The three forms in which prompts have been written; an earlier one wins over a later one.
struct PromptForm {
  std::string_view mark;
  std::string_view secondMark;
  QStringList (*words)(const Record&);
};

constexpr std::array<PromptForm, kCodexForms> kPromptForms = {
    PromptForm{R"("user_message")", "", ofUserMessage},
    PromptForm{R"("item_completed")", R"("UserMessage")", ofCompletedItem},
    PromptForm{R"("response_item")", R"("user")", ofResponseItem},
};

/// An answer of Claude Code's.
QStringList claudeAnswer(std::string_view line, LineDecoder& decoder) {
  if (!contains(line, R"("type":"assistant")") || contains(line, R"("isSidechain":true)")) return {};
  const auto record = decoder.decode(line);
  return record ? partTexts(member(*record, {"message", "content"}), u"text"_s) : QStringList();
}

/// An answer of Codex's, in the two forms in which they are written.
QStringList codexAnswer(std::string_view line, LineDecoder& decoder) {
  if (!contains(line, R"("agent_message")") && !contains(line, R"("assistant")")) return {};
  const auto record = decoder.decode(line);
  if (!record) return {};
  if (text(*record, {"payload", "type"}) == u"agent_message")
    return {text(*record, {"payload", "message"}).value_or(QString())};
  if (text(*record, {"payload", "role"}) != u"assistant") return {};
  return partTexts(member(*record, {"payload", "content"}), u"output_text"_s);
}

}  // namespace

std::optional<PromptWords> claudeWords(std::string_view line, LineDecoder& decoder) {
  if (!contains(line, R"("type":"user")") || contains(line, R"("toolUseResult")") ||
      contains(line, R"("isSidechain":true)"))
    return std::nullopt;
  const auto record = decoder.decode(line);
  if (!record) return std::nullopt;
  const bool byMachine = contains(line, R"("isMeta":true)") || contains(line, R"("isCompactSummary":true)");
  if (const auto whole = text(*record, {"message", "content"})) return PromptWords{{*whole}, byMachine};
  return PromptWords{partTexts(member(*record, {"message", "content"}), u"text"_s), byMachine};
}

QStringList codexWords(std::string_view line, std::size_t index, LineDecoder& decoder) {
  const PromptForm& form = kPromptForms[index];
  if (!contains(line, form.mark) || !contains(line, form.secondMark)) return {};
  const auto record = decoder.decode(line);
  if (!record) return {};
  QStringList words = form.words(*record);
  for (QString& text : words) text = codexRequest(text);
  return words;
}

QStringList spokenTexts(std::string_view line, SessionAgent agent, LineDecoder& decoder) {
  if (agent == SessionAgent::claude) {
    const auto words = claudeWords(line, decoder);
    return words ? words->texts : claudeAnswer(line, decoder);
  }
  for (std::size_t form = 0; form < kCodexForms; ++form)
    if (QStringList words = codexWords(line, form, decoder); !words.isEmpty()) return words;
  return codexAnswer(line, decoder);
}
