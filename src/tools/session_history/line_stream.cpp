#include "tools/session_history/line_stream.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace {

constexpr std::size_t kBlock = 1024 * 1024;

}  // namespace

LineStream::~LineStream() {
  if (descriptor_ >= 0) close(descriptor_);
}

bool LineStream::open(const std::string& path) {
  if (descriptor_ >= 0) close(descriptor_);
  descriptor_ = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
  begin_ = end_ = 0;
  atEnd_ = skipsLine_ = false;
  struct stat status{};
  return descriptor_ >= 0 && fstat(descriptor_, &status) == 0 && S_ISREG(status.st_mode);
}

std::string_view LineStream::nextBlock() {
  while (!atEnd_) {
    if (!fill()) break;
    const std::string_view text(buffer_.data(), end_);
    const std::size_t lastNewline = text.rfind('\n');
    if (lastNewline == std::string_view::npos) {
      if (end_ < kLongestLine) continue;
      skipsLine_ = true;
      end_ = 0;
      continue;
    }
    const std::size_t start = skipsLine_ ? text.find('\n') + 1 : 0;
    skipsLine_ = false;
    begin_ = lastNewline + 1;
    if (start < begin_) return text.substr(start, begin_ - start);
  }
  const std::string_view rest =
      skipsLine_ ? std::string_view() : std::string_view(buffer_.data() + begin_, end_ - begin_);
  begin_ = end_ = 0;
  return rest;
}

/// Moves what has not been returned to the front and reads behind it.
bool LineStream::fill() {
  if (begin_ > 0) std::memmove(buffer_.data(), buffer_.data() + begin_, end_ - begin_);
  end_ -= begin_;
  begin_ = 0;
  if (buffer_.size() < end_ + kBlock) buffer_.resize(end_ + kBlock);
  ssize_t got = 0;
  do {
    got = read(descriptor_, buffer_.data() + end_, kBlock);
  } while (got < 0 && errno == EINTR);
  atEnd_ = got <= 0;
  if (got > 0) end_ += static_cast<std::size_t>(got);
  return got > 0;
}
