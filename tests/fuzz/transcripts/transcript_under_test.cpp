#include "fuzz/transcripts/transcript_under_test.h"

#include <QTemporaryDir>
#include <QTextBoundaryFinder>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <span>
#include <string>
#include <vector>

#include "tools/session_history/line_stream.h"
#include "tools/session_history/prompt_text.h"
#include "tools/session_history/prompt_words.h"
#include "tools/session_history/session_preview.h"

namespace {

constexpr std::size_t kControls = 3;
constexpr std::size_t kShapes = 32;

void expect(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "broken: %s\n", what);
  std::abort();
}

/// A file named as an agent names it, written anew for every input.
class File {
 public:
  File() : file_{folder_.path().toStdString() + "/0b6e9c50-9d4c-4a52-8f7c-0e2e1f2d3c4b.jsonl", {}} {}

  const TranscriptFile& write(const std::string& bytes) const {
    std::ofstream(file_.path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return file_;
  }

 private:
  QTemporaryDir folder_;
  TranscriptFile file_;
};

/// The input with something long in it: one line, or many short ones, a little less or more than a chunk holds.
std::string stretched(std::span<const std::uint8_t> controls, std::string text) {
  const std::size_t place = text.size() * controls[1] / 255;
  const std::size_t length = TranscriptReader::kChunk * (controls[0] / kShapes % 3) + controls[2];
  // Most inputs stay small: they are read fifty times as fast.
  switch (controls[0] % kShapes) {
    case 1:
      return text.insert(place, std::string(length, 'x'));
    case 2: {
      std::string lines(length, 'x');
      for (std::size_t at = 0; at < length; at += 997) lines[at] = '\n';
      return text.insert(place, lines);
    }
    case 3:
      return text.insert(place, std::string(length, '\n'));
    default:
      return text;
  }
}

using Lines = std::vector<std::string_view>;

Lines filledLines(std::string_view text) {
  Lines lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    if (end > 0) lines.push_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}

/// What a reader of the two ends has to return, got in the plainest way.
void checkReader(const TranscriptFile& file, std::string_view bytes) {
  const bool isLarge = bytes.size() > TranscriptReader::kChunk;
  Lines head = filledLines(bytes.substr(0, TranscriptReader::kChunk));
  Lines tail = isLarge ? filledLines(bytes.substr(bytes.size() - TranscriptReader::kChunk)) : head;
  if (isLarge && !head.empty()) head.pop_back();
  if (isLarge && !tail.empty()) tail.erase(tail.begin());
  std::ranges::reverse(tail);
  static TranscriptReader reader;
  expect(reader.open(file.path), "a regular file can be opened");
  for (const std::string_view line : head) expect(reader.nextHeadLine() == line, "the head's lines, in order");
  expect(!reader.nextHeadLine(), "no line follows the head's last");
  for (const std::string_view line : tail) expect(reader.previousTailLine() == line, "the tail's lines, backwards");
  expect(!reader.previousTailLine() && !reader.hasFailed(), "no line comes before the tail's first");
}

void checkStream(const TranscriptFile& file, std::string_view bytes, SessionAgent agent) {
  static LineStream stream;
  LineDecoder decoder;
  expect(stream.open(file.path), "a regular file can be streamed");
  std::string all;
  for (std::string_view block = stream.nextBlock(); !block.empty(); block = stream.nextBlock()) {
    all += block;
    for (const std::string_view line : filledLines(block)) spokenTexts(line, agent, decoder);
  }
  expect(all == bytes, "the blocks make up the file");
}

qsizetype characters(const QString& text) {
  QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
  qsizetype count = 0;
  while (finder.toNextBoundary() >= 0) ++count;
  return count;
}

/// Single-spaced; where it was cut, a space may be its last character.
bool isOneLine(const QString& text) { return (text + u'.').simplified() == text + u'.'; }

void checkSession(const VibeSession& session, std::string_view bytes) {
  expect(!session.id.isEmpty() && !session.cwd.isEmpty() && !session.title.isEmpty(), "a session is whole");
  expect(isOneLine(session.title), "a title is one line, single-spaced");
  expect(characters(session.title) <= kLongestPrompt, "a title is short");
  // Only a name that was given to the conversation may begin so.
  const bool isNamed = contains(bytes, R"("ai-title")") || contains(bytes, R"("custom-title")");
  expect(isNamed || !session.title.startsWith(u'<'), "a prompt is no markup");
  expect(!session.gitBranch || !session.gitBranch->isEmpty(), "a branch has a name");
  const QString command = session.resumeCommand();
  expect(std::ranges::none_of(command, [](QChar character) { return character.category() == QChar::Other_Control; }),
         "no control character is typed");
  const SessionPreview preview = readPreview(session);
  for (const QString& prompt : {preview.firstPrompt, preview.lastPrompt})
    expect(isOneLine(prompt) && characters(prompt) <= kPreviewedPrompt, "a preview is one short line");
}

}  // namespace

void readAsTranscript(const std::uint8_t* data, std::size_t size, SessionAgent agent, TranscriptParser parse) {
  if (size < kControls) return;
  static const File file;
  const std::string bytes =
      stretched({data, kControls}, std::string(reinterpret_cast<const char*>(data) + kControls, size - kControls));
  const TranscriptFile& written = file.write(bytes);
  checkReader(written, bytes);
  checkStream(written, bytes, agent);
  ParserScratch scratch;
  const auto session = parse(written, scratch);
  if (session) checkSession(*session, bytes);
  // What one file leaves behind must not show in the next.
  expect(parse(written, scratch) == session, "a reading does not depend on the one before");
}
