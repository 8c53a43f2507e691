#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// Reads a whole file line by line in bounded memory. For one thread; a line holds until the next is asked for.
class LineStream {
 public:
  /// Lines longer by a block are passed over, in bytes: they hold pasted files, and memory must stay bounded.
  static constexpr std::size_t kLongestLine = 16 * 1024 * 1024;

  LineStream() = default;
  ~LineStream();
  LineStream(const LineStream&) = delete;
  LineStream& operator=(const LineStream&) = delete;

  /// False for what cannot be read or is no regular file; never waits for a writer at the other end.
  bool open(const std::string& path);
  /// The lines that have been read and not been taken yet, whole; empty at the end of the file.
  std::string_view nextBlock();

 private:
  bool fill();

  int descriptor_ = -1;
  std::vector<char> buffer_;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
  bool atEnd_ = false;
  bool skipsLine_ = false;
};
