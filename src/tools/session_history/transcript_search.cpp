#include "tools/session_history/transcript_search.h"

#include <QFile>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "base/text_search.h"
#include "base/visible_text.h"
#include "tools/session_history/byte_phrase.h"
#include "tools/session_history/line_stream.h"
#include "tools/session_history/prompt_words.h"
#include "tools/session_history/transcript_parsers.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kExcerpt = 120;
/// How many characters of an excerpt stand before the place.
constexpr int kLead = 30;
/// How many files ahead of the one that is due may be finished, so that results wait in bounded memory.
constexpr std::size_t kAhead = 256;

struct Candidate {
  TranscriptFile file;
  SessionAgent agent;
};

/// Looks for one text in one file after the other. For one thread.
class FileSearch {
 public:
  /// `text`: one line.
  explicit FileSearch(const QString& text)
      : key_(searchKey(text)), phrase_(text.normalized(QString::NormalizationForm_C)) {}

  /// The first text that contains what is looked for, cut to an excerpt; null when there is none.
  QString excerpt(const Candidate& candidate, const std::stop_token& stop) {
    if (!stream_.open(candidate.file.path)) return {};
    for (std::string_view block = stream_.nextBlock(); !block.empty(); block = stream_.nextBlock()) {
      if (stop.stop_requested()) return {};
      if (const QString found = inBlock(block, candidate.agent); !found.isNull()) return found;
    }
    return {};
  }

 private:
  QString inBlock(std::string_view block, SessionAgent agent) {
    if (phrase_.isEmpty()) return inEveryLine(block, agent);
    lowered_.resize(block.size());
    std::ranges::transform(block, lowered_.begin(), lowered);
    std::string_view rest = lowered_;
    for (std::size_t at = phrase_.findLongest(rest); at != std::string_view::npos; at = phrase_.findLongest(rest)) {
      const std::size_t start = rest.substr(0, at).rfind('\n') + 1;
      const std::size_t end = std::min(rest.find('\n', at), rest.size() - 1) + 1;
      const std::string_view line = rest.substr(start, end - start);
      rest.remove_prefix(end);
      if (!phrase_.mayBeIn(line)) continue;
      const std::size_t place = static_cast<std::size_t>(line.data() - lowered_.data());
      if (const QString found = inLine(block.substr(place, line.size()), agent); !found.isNull()) return found;
    }
    return {};
  }

  QString inEveryLine(std::string_view block, SessionAgent agent) {
    while (!block.empty()) {
      const std::size_t end = std::min(block.find('\n'), block.size());
      if (const QString found = inLine(block.substr(0, end), agent); !found.isNull()) return found;
      block.remove_prefix(std::min(end + 1, block.size()));
    }
    return {};
  }

  QString inLine(std::string_view line, SessionAgent agent) {
    for (const QString& text : spokenTexts(line, agent, decoder_)) {
      const QString shown = text.simplified();
      const qsizetype at = searchKey(shown).indexOf(key_);
      if (at >= 0) return around(at, shown);
    }
    return {};
  }

  static QString around(qsizetype place, const QString& text) {
    if (place <= kLead) return visibleLine(text, kExcerpt);
    const qsizetype start = std::min(place - kLead, text.size() - 1);
    return visibleLine(u'…' + text.mid(text[start].isLowSurrogate() ? start + 1 : start), kExcerpt);
  }

  QString key_;
  BytePhrase phrase_;
  std::string lowered_;
  LineStream stream_;
  LineDecoder decoder_;
};

/// Files searched side by side, their hits handed out in the files' order.
class Search {
 public:
  Search(std::vector<Candidate> candidates, const SearchRequest& request, const std::stop_token& stop)
      : candidates_(std::move(candidates)), request_(request), stop_(stop), results_(candidates_.size()) {}

  void run(const std::function<void(const SearchHit&)>& found) {
    std::vector<std::jthread> workers;
    const unsigned cores = std::clamp(std::thread::hardware_concurrency(), 1U, 4U);
    for (unsigned count = 0; count < cores; ++count)
      workers.emplace_back([this](const std::stop_token& ended) { work(ended); });
    std::size_t hits = 0;
    for (std::size_t index = 0; index < candidates_.size() && hits < request_.limit && !stop_.stop_requested();
         ++index) {
      if (const auto hit = await(index)) {
        ++hits;
        found(*hit);
      }
    }
    for (std::jthread& worker : workers) worker.request_stop();
    progress_.notify_all();
  }

 private:
  struct Result {
    bool done = false;
    std::optional<SearchHit> hit;
  };

  std::optional<SearchHit> await(std::size_t index) {
    std::unique_lock lock(mutex_);
    due_ = index;
    progress_.notify_all();
    progress_.wait(lock, [&] { return results_[index].done; });
    return std::move(results_[index].hit);
  }

  void work(const std::stop_token& ended) {
    FileSearch search(request_.text.simplified());
    ParserScratch scratch;
    for (std::size_t index = next_++; index < candidates_.size() && !ended.stop_requested(); index = next_++) {
      {
        std::unique_lock lock(mutex_);
        progress_.wait(lock, [&] { return ended.stop_requested() || index < due_ + kAhead; });
      }
      auto hit = look(index, search, scratch, ended);
      const std::scoped_lock lock(mutex_);
      results_[index] = {true, std::move(hit)};
      progress_.notify_all();
    }
  }

  std::optional<SearchHit> look(std::size_t index, FileSearch& search, ParserScratch& scratch,
                                const std::stop_token& ended) {
    const Candidate& candidate = candidates_[index];
    const QString excerpt = search.excerpt(candidate, ended);
    if (excerpt.isNull()) return std::nullopt;
    auto session = candidate.agent == SessionAgent::claude ? parseClaude(candidate.file, scratch)
                                                           : parseCodex(candidate.file, scratch);
    if (!session) return std::nullopt;
    return SearchHit{std::move(*session), excerpt};
  }

  std::vector<Candidate> candidates_;
  const SearchRequest& request_;
  const std::stop_token& stop_;
  std::mutex mutex_;
  std::condition_variable progress_;
  std::vector<Result> results_;
  std::size_t due_ = 0;
  std::atomic<std::size_t> next_ = 0;
};

std::vector<Candidate> candidatesBelow(const std::string& home, const SearchRequest& request) {
  std::vector<Candidate> candidates;
  if (request.includeClaude)
    for (TranscriptFile& file : claudeCandidates(home)) candidates.push_back({std::move(file), SessionAgent::claude});
  if (request.includeCodex)
    for (TranscriptFile& file : codexCandidates(home)) candidates.push_back({std::move(file), SessionAgent::codex});
  std::ranges::stable_sort(candidates, std::ranges::greater(),
                           [](const Candidate& candidate) { return candidate.file.modified; });
  return candidates;
}

}  // namespace

void searchTranscripts(const QString& home, const SearchRequest& request,
                       const std::function<void(const SearchHit&)>& found, const std::stop_token& stop) {
  if (request.text.simplified().isEmpty()) return;
  Search(candidatesBelow(QFile::encodeName(home).toStdString(), request), request, stop).run(found);
}
