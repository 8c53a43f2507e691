#include "tools/session_history/session_scanner.h"

#include <QFile>
#include <QSet>

#include <algorithm>
#include <atomic>
#include <span>
#include <thread>

#include "tools/session_history/transcript_parsers.h"

namespace {

using Parser = std::optional<VibeSession> (*)(const TranscriptFile&, ParserScratch&);
using Parsed = std::vector<std::optional<VibeSession>>;

/// Below this many files a second thread costs more than it saves.
constexpr std::size_t kWorthAThread = 16;
constexpr std::size_t kMostThreads = 4;
/// The fewest files looked at in one go, so that stubs do not make a walk of single steps.
constexpr std::size_t kSmallestBatch = 16;

/// Parses files side by side; the results stand in the files' order.
class Batch {
 public:
  Batch(std::span<const TranscriptFile> files, Parser parse, std::stop_token stop)
      : files_(files), parse_(parse), stop_(std::move(stop)), parsed_(files.size()) {}

  Parsed run() {
    {
      std::vector<std::jthread> others;
      for (std::size_t count = threads(); count > 1; --count) others.emplace_back([this] { work(); });
      work();
    }
    return std::move(parsed_);
  }

 private:
  std::size_t threads() const {
    const std::size_t cores = std::max(1U, std::thread::hardware_concurrency());
    return std::clamp(files_.size() / kWorthAThread, std::size_t{1}, std::min(cores, kMostThreads));
  }

  void work() {
    ParserScratch scratch;
    while (!stop_.stop_requested()) {
      const std::size_t index = next_++;
      if (index >= files_.size()) return;
      parsed_[index] = parse_(files_[index], scratch);
    }
  }

  std::span<const TranscriptFile> files_;
  Parser parse_;
  std::stop_token stop_;
  Parsed parsed_;
  std::atomic<std::size_t> next_ = 0;
};

/// The first `limit` sessions in the files' order; of two with one id the newer.
std::vector<VibeSession> collect(std::span<const TranscriptFile> files, Parser parse, std::size_t limit,
                                 const std::stop_token& stop) {
  std::vector<VibeSession> sessions;
  QSet<QString> ids;
  while (sessions.size() < limit && !files.empty() && !stop.stop_requested()) {
    const std::size_t count = std::min(files.size(), std::max(limit - sessions.size(), kSmallestBatch));
    for (auto& session : Batch(files.first(count), parse, stop).run()) {
      if (sessions.size() == limit || !session || ids.contains(session->id)) continue;
      ids.insert(session->id);
      sessions.push_back(std::move(*session));
    }
    files = files.subspan(count);
  }
  return sessions;
}

}  // namespace

std::vector<VibeSession> SessionTraceScanner::recentSessions(std::size_t limit, bool includeClaude, bool includeCodex,
                                                             const std::stop_token& stop) const {
  const std::string home = QFile::encodeName(home_).toStdString();
  std::vector<VibeSession> sessions;
  if (includeClaude) sessions = collect(claudeCandidates(home), parseClaude, limit, stop);
  if (includeCodex)
    std::ranges::move(collect(codexCandidates(home), parseCodex, limit, stop), std::back_inserter(sessions));
  std::ranges::stable_sort(sessions, std::ranges::greater(), &VibeSession::lastActivity);
  if (sessions.size() > limit) sessions.resize(limit);
  return sessions;
}
