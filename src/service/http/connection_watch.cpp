#include "service/http/connection_watch.h"

#include <sys/socket.h>

using namespace std::chrono_literals;

namespace {

/// Slower than any network that somebody would wait for.
constexpr long long kBytesPerSecond = 1024;

}  // namespace

void ConnectionWatch::Line::expectHead() { set(Clock::now() + patience_); }

void ConnectionWatch::Line::expectBody(Clock::time_point begun, long long received) {
  set(begun + patience_ + std::chrono::seconds(received / kBytesPerSecond));
}

void ConnectionWatch::Line::expectDelivery(long long size) {
  set(Clock::now() + patience_ + std::chrono::seconds(size / kBytesPerSecond));
}

void ConnectionWatch::Line::wait() { set(Clock::time_point::max()); }

ConnectionWatch::ConnectionWatch(std::chrono::seconds patience)
    : patience_(patience), thread_([this](const std::stop_token& stop) { work(stop); }) {}

ConnectionWatch::Line* ConnectionWatch::open(int socket) {
  auto line = std::make_unique<Line>(socket, patience_);
  const std::lock_guard lock(mutex_);
  Line* const opened = line.get();
  lines_.emplace(opened, std::move(line));
  if (lines_.size() == 1) opened_.notify_all();
  return opened;
}

void ConnectionWatch::close(const Line* line) {
  const std::lock_guard lock(mutex_);
  lines_.erase(line);
}

void ConnectionWatch::giveUp() {
  const std::lock_guard lock(mutex_);
  for (const auto& [line, owned] : lines_) owned->giveUp();
}

void ConnectionWatch::work(const std::stop_token& stop) {
  std::unique_lock lock(mutex_);
  while (!stop.stop_requested()) {
    // Without a connection nothing wakes it.
    opened_.wait(lock, stop, [this] { return !lines_.empty(); });
    opened_.wait_for(lock, stop, 1s, [] { return false; });
    endOverdue();
    findGone();
  }
}

void ConnectionWatch::endOverdue() {
  const auto now = Clock::now().time_since_epoch().count();
  // The server sees the end of the stream and closes the socket itself.
  for (const auto& [line, owned] : lines_)
    if (line->deadline_ < now) shutdown(line->socket_, SHUT_RDWR);
}

void ConnectionWatch::findGone() {
  char next = 0;
  for (const auto& [line, owned] : lines_) {
    if (line->deadline_ != Clock::time_point::max().time_since_epoch().count()) continue;
    if (recv(line->socket_, &next, 1, MSG_PEEK | MSG_DONTWAIT) == 0) owned->giveUp();
  }
}
