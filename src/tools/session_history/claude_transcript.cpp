#include "tools/session_history/prompt_text.h"
#include "tools/session_history/prompt_words.h"
#include "tools/session_history/transcript_parsers.h"

namespace {

/// What the records of titles say, the newest of each kind; empty where there is none.
struct Titles {
  QString custom;
  QString ai;
  QString lastPrompt;
};

/// What the head says.
struct Head {
  QString cwd;
  std::optional<QString> gitBranch;
  QString prompt;
  /// A prompt that no person typed.
  QString machinePrompt;
};

class ClaudeParser {
 public:
  ClaudeParser(const TranscriptFile& file, ParserScratch& scratch)
      : file_(file), reader_(scratch.reader), decoder_(scratch.decoder) {}

  std::optional<VibeSession> parse() {
    if (!reader_.open(file_.path)) return std::nullopt;
    readTitles();
    readHead();
    if (head_.cwd.isEmpty()) findFolderInTail();
    VibeSession session{QString::fromStdString(file_.stem()),
                        SessionAgent::claude,
                        title(),
                        head_.cwd,
                        head_.gitBranch,
                        file_.modified,
                        file_.path};
    if (reader_.hasFailed() || session.cwd.isEmpty() || session.title.isEmpty()) return std::nullopt;
    return session;
  }

 private:
  QString title() const {
    for (const QString& candidate : {titles_.custom, titles_.ai, head_.prompt, titles_.lastPrompt})
      if (!candidate.isEmpty()) return candidate;
    return head_.machinePrompt;
  }

  /// From the newest back; the user's own title ends the search, for nothing outranks it.
  void readTitles() {
    while (titles_.custom.isEmpty()) {
      const auto line = reader_.previousTailLine();
      if (!line) return;
      take(*line, R"("type":"custom-title")", "customTitle", titles_.custom);
      take(*line, R"("type":"ai-title")", "aiTitle", titles_.ai);
      takeLastPrompt(*line);
    }
  }

  void take(std::string_view line, std::string_view mark, std::string_view key, QString& title) {
    if (!title.isEmpty() || !contains(line, mark)) return;
    if (const auto record = decoder_.decode(line)) title = shortLine(text(*record, {key}).value_or(QString()));
  }

  void takeLastPrompt(std::string_view line) {
    if (!titles_.lastPrompt.isEmpty() || !contains(line, R"("type":"last-prompt")")) return;
    const auto record = decoder_.decode(line);
    const auto prompt = record ? text(*record, {"lastPrompt"}) : std::nullopt;
    if (prompt) titles_.lastPrompt = cleanPrompt(*prompt).value_or(QString());
  }

  void readHead() {
    const bool needsPrompt = titles_.custom.isEmpty() && titles_.ai.isEmpty();
    while (head_.cwd.isEmpty() || (needsPrompt && head_.prompt.isEmpty())) {
      const auto line = reader_.nextHeadLine();
      if (!line) return;
      if (head_.cwd.isEmpty()) takeFolder(*line);
      if (needsPrompt && head_.prompt.isEmpty()) takePrompt(*line);
    }
  }

  void takeFolder(std::string_view line) {
    if (!contains(line, R"("cwd":)")) return;
    const auto record = decoder_.decode(line);
    const auto cwd = record ? filledText(*record, {"cwd"}) : std::nullopt;
    if (!cwd) return;
    head_.cwd = *cwd;
    head_.gitBranch = filledText(*record, {"gitBranch"});
  }

  void takePrompt(std::string_view line) {
    const auto words = claudeWords(line, decoder_);
    if (!words) return;
    QString& prompt = words->byMachine ? head_.machinePrompt : head_.prompt;
    if (prompt.isEmpty()) prompt = firstPrompt(words->texts);
  }

  /// A long preamble can push the folder out of the head. In the tail it may have drifted, so the one counts that the
  /// transcript's own folder is named after.
  void findFolderInTail() {
    const QString name = QString::fromStdString(file_.folderName());
    reader_.rewindTail();
    while (const auto line = reader_.previousTailLine()) {
      takeFolder(*line);
      if (folderNameOf(head_.cwd) == name) return;
      head_.cwd.clear();
      head_.gitBranch.reset();
    }
  }

  static QString folderNameOf(QString cwd) {
    for (QChar& character : cwd) {
      const char16_t code = character.unicode();
      const bool isPlain =
          (code >= u'0' && code <= u'9') || (code >= u'a' && code <= u'z') || (code >= u'A' && code <= u'Z');
      if (!isPlain) character = u'-';
    }
    return cwd;
  }

  const TranscriptFile& file_;
  TranscriptReader& reader_;
  LineDecoder& decoder_;
  Titles titles_;
  Head head_;
};

}  // namespace

std::optional<VibeSession> parseClaude(const TranscriptFile& file, ParserScratch& scratch) {
  return ClaudeParser(file, scratch).parse();
}
