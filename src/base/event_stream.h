#pragma once

#include <QByteArray>

#include <vector>

/// One event of a body of the media type text/event-stream.
struct StreamEvent {
  /// "message" where the stream names none.
  QByteArray name;
  /// Its data lines, joined by line feeds.
  QByteArray data;

  bool operator==(const StreamEvent&) const = default;
};

/// Reads a stream of server-sent events, in pieces that may be cut anywhere. Lines end with CR, LF or both; comments
/// and unknown fields are skipped; an event without data is none, and neither is one that the stream ends in.
class EventStreamReader {
 public:
  /// No event is larger than `largestEvent` bytes.
  explicit EventStreamReader(qsizetype largestEvent) : largestEvent_(largestEvent) {}

  /// The events that end in `piece`, the next one of the stream.
  std::vector<StreamEvent> read(QByteArrayView piece);
  /// Whether an event was too large; nothing is read any more.
  bool hasOverflown() const { return hasOverflown_; }

 private:
  void take(char byte, std::vector<StreamEvent>& events);
  void endLine(std::vector<StreamEvent>& events);
  void takeField(QByteArrayView line);
  void dispatch(std::vector<StreamEvent>& events);

  qsizetype largestEvent_;
  QByteArray line_;
  StreamEvent event_;
  bool hasData_ = false;
  bool isAfterReturn_ = false;
  bool isFirstLine_ = true;
  bool hasOverflown_ = false;
};
