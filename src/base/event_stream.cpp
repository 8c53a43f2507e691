#include "base/event_stream.h"

#include <utility>

namespace {

constexpr QByteArrayView kByteOrderMark = "\xef\xbb\xbf";

}  // namespace

std::vector<StreamEvent> EventStreamReader::read(QByteArrayView piece) {
  std::vector<StreamEvent> events;
  for (const char byte : piece) {
    if (hasOverflown_) break;
    take(byte, events);
  }
  return events;
}

void EventStreamReader::take(char byte, std::vector<StreamEvent>& events) {
  const bool endsReturn = std::exchange(isAfterReturn_, byte == '\r') && byte == '\n';
  if (endsReturn) return;
  if (byte == '\r' || byte == '\n') return endLine(events);
  line_ += byte;
  hasOverflown_ = line_.size() + event_.data.size() + event_.name.size() > largestEvent_;
}

void EventStreamReader::endLine(std::vector<StreamEvent>& events) {
  const QByteArray line = std::exchange(line_, {});
  const bool isMarked = std::exchange(isFirstLine_, false) && line.startsWith(kByteOrderMark);
  const QByteArrayView text = isMarked ? QByteArrayView(line).sliced(kByteOrderMark.size()) : QByteArrayView(line);
  if (text.isEmpty())
    dispatch(events);
  else
    takeField(text);
}

/// A comment is a field without a name.
void EventStreamReader::takeField(QByteArrayView line) {
  const qsizetype colon = line.indexOf(':');
  const QByteArrayView name = colon < 0 ? line : line.first(colon);
  QByteArrayView value = colon < 0 ? QByteArrayView() : line.sliced(colon + 1);
  if (value.startsWith(' ')) value = value.sliced(1);
  if (name == "event") {
    event_.name = value.toByteArray();
  } else if (name == "data") {
    if (std::exchange(hasData_, true)) event_.data += '\n';
    event_.data += value;
  }
}

void EventStreamReader::dispatch(std::vector<StreamEvent>& events) {
  StreamEvent event = std::exchange(event_, {});
  if (!std::exchange(hasData_, false)) return;
  if (event.name.isEmpty()) event.name = "message";
  events.push_back(std::move(event));
}
