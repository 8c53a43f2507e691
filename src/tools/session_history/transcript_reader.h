#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

/// Reads the lines at the two ends of a transcript, at most 256 KiB of each, and no more of them than is asked for: the
/// head from the front, the tail from the back. Empty lines are left out, and so are those that a chunk's edge cut.
/// One reader serves many files, one after the other; views hold until the next file is opened. For one thread.
class TranscriptReader {
 public:
  /// How much of each end is looked at, in bytes: titles and folders stand there, and a scan's cost stays bounded.
  static constexpr std::size_t kChunk = 262'144;

  TranscriptReader() = default;
  ~TranscriptReader();
  TranscriptReader(const TranscriptReader&) = delete;
  TranscriptReader& operator=(const TranscriptReader&) = delete;

  /// False for what cannot be read or is no regular file; never waits for a writer at the other end.
  bool open(const std::string& path);
  /// The next line from the front; none after the last.
  std::optional<std::string_view> nextHeadLine();
  /// The next line from the back; none after the first. A small file's head and tail are the same lines.
  std::optional<std::string_view> previousTailLine();
  /// Begins again with the last line.
  void rewindTail();
  /// Whether a read has failed: what was returned is not to be relied on.
  bool hasFailed() const { return failed_; }

 private:
  struct Chunk {
    std::unique_ptr<char[]> bytes;
    std::size_t begin = 0;
    std::size_t end = 0;
  };

  bool isSmall() const { return size_ <= static_cast<std::int64_t>(kChunk); }
  bool readInto(Chunk& chunk, std::size_t at, std::size_t count, std::int64_t offset);
  bool growHead();
  bool growTail();
  bool headHasMoreAfter(std::size_t position);
  bool tailHasMoreBefore(std::size_t position);

  int descriptor_ = -1;
  std::int64_t size_ = 0;
  bool failed_ = false;
  Chunk head_;
  Chunk tail_;
  std::size_t headPosition_ = 0;
  std::size_t tailPosition_ = 0;
};

/// Whether `text` contains `wanted`, byte by byte.
bool contains(std::string_view text, std::string_view wanted);
