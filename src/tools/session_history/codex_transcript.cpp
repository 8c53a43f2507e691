#include <QUuid>

#include <array>

#include "tools/session_history/prompt_text.h"
#include "tools/session_history/prompt_words.h"
#include "tools/session_history/transcript_parsers.h"

using namespace Qt::StringLiterals;

namespace {

class CodexParser {
 public:
  CodexParser(const TranscriptFile& file, ParserScratch& scratch)
      : file_(file), reader_(scratch.reader), decoder_(scratch.decoder) {}

  std::optional<VibeSession> parse() {
    if (!reader_.open(file_.path)) return std::nullopt;
    while (const auto line = reader_.nextHeadLine()) {
      if (!hasMeta_ && contains(*line, R"("session_meta")")) takeMeta(*line);
      takeContextAndPrompts(*line);
      if (isSubAgent_ || isComplete()) break;
    }
    if (isSubAgent_) return std::nullopt;
    QString title = bestPrompt();
    if (title.isEmpty() || cwd_.isEmpty()) readTail();
    if (title.isEmpty()) title = bestPrompt();
    VibeSession session{
        id_.isEmpty() ? idOfName() : id_, SessionAgent::codex, title, cwd_, gitBranch_, file_.modified, file_.path};
    if (reader_.hasFailed() || session.id.isEmpty() || session.cwd.isEmpty() || session.title.isEmpty())
      return std::nullopt;
    return session;
  }

 private:
  bool isComplete() const { return hasMeta_ && !cwd_.isEmpty() && !prompts_[0].isEmpty(); }

  QString bestPrompt() const {
    for (const QString& prompt : prompts_)
      if (!prompt.isEmpty()) return prompt;
    return {};
  }

  void takeContextAndPrompts(std::string_view line) {
    if (cwd_.isEmpty() && contains(line, R"("turn_context")")) takeContext(line);
    for (std::size_t form = 0; form < kCodexForms; ++form) takePrompt(line, form);
  }

  /// A sub-agent's transcript repeats its parent's record behind its own: the first one counts.
  void takeMeta(std::string_view line) {
    const auto record = decoder_.decode(line);
    if (!record || text(*record, {"type"}) != u"session_meta") return;
    hasMeta_ = true;
    const auto threadSource = text(*record, {"payload", "thread_source"});
    isSubAgent_ = (threadSource && *threadSource != u"user") || member(*record, {"payload", "source", "subagent"});
    id_ = text(*record, {"payload", "id"}).value_or(QString());
    cwd_ = filledText(*record, {"payload", "cwd"}).value_or(cwd_);
    gitBranch_ = filledText(*record, {"payload", "git", "branch"});
    if (!gitBranch_) gitBranch_ = filledText(*record, {"payload", "branch"});
  }

  void takeContext(std::string_view line) {
    const auto record = decoder_.decode(line);
    if (record && text(*record, {"type"}) == u"turn_context")
      cwd_ = text(*record, {"payload", "cwd"}).value_or(QString());
  }

  void takePrompt(std::string_view line, std::size_t form) {
    if (prompts_[form].isEmpty()) prompts_[form] = firstPrompt(codexWords(line, form, decoder_));
  }

  /// The first prompts of a long transcript's tail stand for those that its head is too full to show.
  void readTail() {
    std::vector<std::string_view> lines;
    while (const auto line = reader_.previousTailLine()) lines.push_back(*line);
    for (auto line = lines.rbegin(); line != lines.rend(); ++line) takeContextAndPrompts(*line);
  }

  QString idOfName() const {
    constexpr qsizetype kLength = 36;
    const QString id = QString::fromStdString(file_.stem()).right(kLength);
    return QUuid::fromString(id).isNull() ? QString() : id;
  }

  const TranscriptFile& file_;
  TranscriptReader& reader_;
  LineDecoder& decoder_;
  bool hasMeta_ = false;
  bool isSubAgent_ = false;
  QString id_;
  QString cwd_;
  std::optional<QString> gitBranch_;
  std::array<QString, kCodexForms> prompts_;
};

}  // namespace

std::optional<VibeSession> parseCodex(const TranscriptFile& file, ParserScratch& scratch) {
  return CodexParser(file, scratch).parse();
}
