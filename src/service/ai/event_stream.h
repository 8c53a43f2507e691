#pragma once

#include <QByteArray>

#include <functional>
#include <string_view>

/// Reads a "text/event-stream" in pieces of any size and hands on the data of each event.
class EventStream {
 public:
  using Take = std::function<void(const QByteArray& data)>;

  explicit EventStream(Take take) : take_(std::move(take)) {}

  /// False: an event is longer than any that makes sense; nothing is handed on from then on.
  bool feed(std::string_view bytes);

 private:
  void endLine();

  Take take_;
  QByteArray line_;
  QByteArray data_;
  bool hasData_ = false;
  bool isAfterReturn_ = false;
  bool isTooLong_ = false;
};
