// Times the scanner inside one process, beside a plain listing and reading of the same bytes, and prints JSON.
// usage: scan_sessions <home> <limit> <runs> | scan_sessions <home> search <text>

#include <QFile>
#include <QString>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <span>
#include <string_view>

#include "tools/session_history/session_scanner.h"
#include "tools/session_history/transcript_files.h"
#include "tools/session_history/transcript_reader.h"
#include "tools/session_history/transcript_search.h"

namespace {

constexpr std::size_t kFirstBlock = 32'768;

double milliseconds(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> values) {
  std::ranges::nth_element(values, values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2));
  return values[values.size() / 2];
}

/// The bytes that any scan needs of the newest files: the first block of each, and of Claude Code's the tail, where the
/// user's own title may stand anywhere.
std::size_t readEnds(std::span<const TranscriptFile> files, bool withTails) {
  static std::vector<char> buffer(TranscriptReader::kChunk);
  std::size_t bytes = 0;
  for (const TranscriptFile& file : files) {
    const int descriptor = open(file.path.c_str(), O_RDONLY | O_CLOEXEC);
    const off_t size = lseek(descriptor, 0, SEEK_END);
    const auto tail = withTails ? std::min<std::size_t>(buffer.size(), static_cast<std::size_t>(size)) : 0;
    for (const auto& [count, offset] : {std::pair{kFirstBlock, off_t{0}}, {tail, size - static_cast<off_t>(tail)}})
      bytes += static_cast<std::size_t>(std::max<ssize_t>(0, pread(descriptor, buffer.data(), count, offset)));
    close(descriptor);
  }
  return bytes;
}

void listAndRead(const std::string& home, std::size_t limit) {
  const auto newest = [limit](std::span<const TranscriptFile> files) {
    return files.first(std::min(limit, files.size()));
  };
  readEnds(newest(claudeCandidates(home)), true);
  readEnds(newest(codexCandidates(home)), false);
}

/// Of this program alone: what getrusage says begins with the memory of whoever started it.
long peakKilobytes() {
  QFile status(QStringLiteral("/proc/self/status"));
  if (!status.open(QFile::ReadOnly)) return 0;
  for (const QByteArray& line : status.readAll().split('\n'))
    if (line.startsWith("VmHWM:")) return line.mid(6).trimmed().split(' ').front().toLong();
  return 0;
}

/// Takes the files out of the system's cache, as far as it lets go of them.
void cool(const std::string& home) {
  sync();
  for (const auto& files : {claudeCandidates(home), codexCandidates(home)}) {
    for (const TranscriptFile& file : files) {
      const int descriptor = open(file.path.c_str(), O_RDONLY | O_CLOEXEC);
      posix_fadvise(descriptor, 0, 0, POSIX_FADV_DONTNEED);
      close(descriptor);
    }
  }
}

int measureScan(const QString& home, std::size_t limit, int runs) {
  const SessionTraceScanner scanner(home);
  const std::string path = QFile::encodeName(home).toStdString();
  const long before = peakKilobytes();
  std::size_t found = 0;
  const auto scan = [&] { found = scanner.recentSessions(limit, true, true).size(); };
  cool(path);
  const double cold = milliseconds(scan);
  std::vector<double> warm;
  std::vector<double> floor;
  for (int run = 0; run < runs; ++run) {
    warm.push_back(milliseconds(scan));
    floor.push_back(milliseconds([&] { listAndRead(path, limit); }));
  }
  std::printf(R"({"sessions": %zu, "cold": %.2f, "warm": %.2f, "floor": %.2f, "grown_kb": %ld})"
              "\n",
              found, cold, median(warm), median(floor), peakKilobytes() - before);
  return 0;
}

int measureSearch(const QString& home, const QString& text) {
  std::size_t hits = 0;
  const auto search = [&] { searchTranscripts(home, {text}, [&](const SearchHit&) { ++hits; }); };
  search();
  hits = 0;
  const double warm = milliseconds(search);
  std::printf(R"({"hits": %zu, "warm": %.2f, "peak_kb": %ld})"
              "\n",
              hits, warm, peakKilobytes());
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) return 2;
  const QString home = QFile::decodeName(argv[1]);
  if (std::string_view(argv[2]) == "search") return measureSearch(home, QString::fromUtf8(argv[3]));
  return measureScan(home, std::strtoul(argv[2], nullptr, 10), std::atoi(argv[3]));
}
