#pragma once

#include <QByteArray>

#include <functional>
#include <mutex>
#include <optional>
#include <span>

/// A body that is sent while it is still being made. One thread writes, the server reads; the connection rests while
/// there is nothing to send. What is written after the client has gone is thrown away.
class BodyStream {
 public:
  void write(const QByteArray& bytes);
  /// The body is whole. Has to be called, whatever happens.
  void end();

  /// For the server, before it reads: how the connection rests and goes on, and what wants to know of the end.
  struct Connection {
    std::function<void()> rest;
    std::function<void()> resume;
    std::function<void()> ended;
  };
  void attach(Connection connection);
  void detach();
  /// How many bytes it gave: 0, the connection rests now; nothing, the end.
  std::optional<std::size_t> read(std::span<char> room);

 private:
  std::mutex mutex_;
  Connection connection_;
  QByteArray waiting_;
  bool isAttached_ = false;
  bool isDetached_ = false;
  bool rests_ = false;
  bool isEnded_ = false;
};
