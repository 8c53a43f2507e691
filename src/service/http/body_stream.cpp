#include "service/http/body_stream.h"

#include <algorithm>
#include <utility>

void BodyStream::write(const QByteArray& bytes) {
  const std::lock_guard lock(mutex_);
  if (isDetached_) return;
  waiting_ += bytes;
  if (std::exchange(rests_, false)) connection_.resume();
}

void BodyStream::end() {
  std::function<void()> ended;
  {
    const std::lock_guard lock(mutex_);
    isEnded_ = true;
    if (std::exchange(rests_, false)) connection_.resume();
    if (isAttached_) ended = std::exchange(connection_.ended, {});
  }
  if (ended) ended();
}

void BodyStream::attach(Connection connection) {
  std::function<void()> ended;
  {
    const std::lock_guard lock(mutex_);
    connection_ = std::move(connection);
    isAttached_ = true;
    if (isEnded_) ended = std::exchange(connection_.ended, {});
  }
  if (ended) ended();
}

void BodyStream::detach() {
  const std::lock_guard lock(mutex_);
  isDetached_ = true;
  waiting_.clear();
}

std::optional<std::size_t> BodyStream::read(std::span<char> room) {
  const std::lock_guard lock(mutex_);
  if (waiting_.isEmpty() && isEnded_) return {};
  if (waiting_.isEmpty()) {
    rests_ = true;
    connection_.rest();
    return 0;
  }
  const auto count = std::min(room.size(), static_cast<std::size_t>(waiting_.size()));
  std::ranges::copy_n(waiting_.constData(), static_cast<std::ptrdiff_t>(count), room.data());
  waiting_.remove(0, static_cast<qsizetype>(count));
  return count;
}
