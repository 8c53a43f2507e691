#include "tools/session_history/transcript_reader.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace {

/// What is read at a time, in bytes: most files tell all there is to know in the first one.
constexpr std::size_t kBlock = 32'768;

/// memchr looks at many bytes at a time, rfind at one: so the window that holds the newline is found by the former.
std::size_t lastNewline(std::string_view text) {
  constexpr std::size_t kWindow = 512;
  while (!text.empty()) {
    const std::size_t start = text.size() - std::min(kWindow, text.size());
    const std::string_view window = text.substr(start);
    if (std::memchr(window.data(), '\n', window.size()) != nullptr) return start + window.rfind('\n');
    text.remove_suffix(window.size());
  }
  return std::string_view::npos;
}

}  // namespace

bool contains(std::string_view text, std::string_view wanted) {
  return memmem(text.data(), text.size(), wanted.data(), wanted.size()) != nullptr;
}

TranscriptReader::~TranscriptReader() {
  if (descriptor_ >= 0) close(descriptor_);
}

bool TranscriptReader::open(const std::string& path) {
  if (descriptor_ >= 0) close(descriptor_);
  descriptor_ = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
  struct stat status{};
  if (descriptor_ < 0 || fstat(descriptor_, &status) != 0 || !S_ISREG(status.st_mode)) return false;
  size_ = status.st_size;
  failed_ = false;
  for (Chunk* chunk : {&head_, &tail_}) {
    if (!chunk->bytes) chunk->bytes = std::make_unique_for_overwrite<char[]>(kChunk);
    chunk->begin = chunk->end = 0;
  }
  headPosition_ = 0;
  tail_.begin = tail_.end = isSmall() ? static_cast<std::size_t>(size_) : kChunk;
  rewindTail();
  return true;
}

std::optional<std::string_view> TranscriptReader::nextHeadLine() {
  for (;;) {
    const char* start = head_.bytes.get() + headPosition_;
    const std::size_t known = head_.end - headPosition_;
    const auto* newline = static_cast<const char*>(known == 0 ? nullptr : std::memchr(start, '\n', known));
    if (newline == nullptr && growHead()) continue;
    const std::size_t length = newline == nullptr ? known : static_cast<std::size_t>(newline - start);
    const std::size_t lineStart = headPosition_;
    headPosition_ += length + (newline == nullptr ? 0 : 1);
    if (length == 0 && newline == nullptr) return std::nullopt;
    if (length == 0) continue;
    // The last line of a chunk may have been cut by its edge.
    if (!isSmall() && !headHasMoreAfter(headPosition_)) return std::nullopt;
    return std::string_view(head_.bytes.get() + lineStart, length);
  }
}

std::optional<std::string_view> TranscriptReader::previousTailLine() {
  const char* bytes = tail_.bytes.get();
  while (tailPosition_ > tail_.begin || growTail()) {
    if (bytes[tailPosition_ - 1] == '\n') {
      --tailPosition_;
      continue;
    }
    const std::size_t newline = lastNewline({bytes + tail_.begin, tailPosition_ - tail_.begin});
    if (newline == std::string_view::npos && growTail()) continue;
    const std::size_t start = tail_.begin + (newline == std::string_view::npos ? 0 : newline + 1);
    const std::string_view line(bytes + start, tailPosition_ - start);
    tailPosition_ = start;
    // The first line of a chunk may have begun before it.
    if (!isSmall() && !tailHasMoreBefore(start)) return std::nullopt;
    return line;
  }
  return std::nullopt;
}

void TranscriptReader::rewindTail() { tailPosition_ = tail_.end; }

bool TranscriptReader::readInto(Chunk& chunk, std::size_t at, std::size_t count, std::int64_t offset) {
  std::size_t done = 0;
  while (done < count) {
    const ssize_t got =
        pread(descriptor_, chunk.bytes.get() + at + done, count - done, offset + static_cast<off_t>(done));
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) {
      // A file that has become shorter meanwhile is as unreadable as any other.
      failed_ = true;
      return false;
    }
    done += static_cast<std::size_t>(got);
  }
  return true;
}

bool TranscriptReader::growHead() {
  const std::size_t limit = std::min<std::size_t>(kChunk, static_cast<std::size_t>(size_));
  const std::size_t count = std::min(kBlock, limit - head_.end);
  if (failed_ || count == 0 || !readInto(head_, head_.end, count, static_cast<std::int64_t>(head_.end))) return false;
  head_.end += count;
  return true;
}

bool TranscriptReader::growTail() {
  const std::size_t count = std::min(kBlock, tail_.begin);
  if (failed_ || count == 0) return false;
  const std::size_t at = tail_.begin - count;
  if (!readInto(tail_, at, count, size_ - static_cast<std::int64_t>(tail_.end - at))) return false;
  tail_.begin = at;
  return true;
}

bool TranscriptReader::headHasMoreAfter(std::size_t position) {
  for (;; ++position) {
    if (position == head_.end && !growHead()) return false;
    if (head_.bytes[position] != '\n') return true;
  }
}

bool TranscriptReader::tailHasMoreBefore(std::size_t position) {
  for (;; --position) {
    if (position == tail_.begin && !growTail()) return false;
    if (tail_.bytes[position - 1] != '\n') return true;
  }
}
