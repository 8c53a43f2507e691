#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "base/event_stream.h"

namespace {

constexpr qsizetype kLargestEvent = 64;

void require(bool holds) {
  if (!holds) std::abort();
}

struct Reading {
  std::vector<StreamEvent> events;
  bool hasOverflown = false;
};

/// In pieces whose sizes follow from the bytes themselves; `most` bounds them.
Reading readIn(QByteArrayView bytes, std::uint32_t most) {
  EventStreamReader reader(kLargestEvent);
  Reading reading;
  std::uint32_t state = static_cast<std::uint32_t>(bytes.size()) + 1;
  while (!bytes.isEmpty()) {
    state = state * 1664525 + 1013904223 + static_cast<unsigned char>(bytes.front());
    const qsizetype length = std::min<qsizetype>(bytes.size(), 1 + (state >> 8) % most);
    // A copy of its own, so that reading beyond it is noticed.
    const QByteArray piece = bytes.first(length).toByteArray();
    for (StreamEvent& event : reader.read(piece)) reading.events.push_back(std::move(event));
    bytes = bytes.sliced(length);
  }
  reading.hasOverflown = reader.hasOverflown();
  return reading;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const QByteArrayView bytes(data, static_cast<qsizetype>(size));
  const Reading whole = readIn(bytes, 1U << 16);
  const Reading pieces = readIn(bytes, 5);
  require(whole.events == pieces.events && whole.hasOverflown == pieces.hasOverflown);
  for (const StreamEvent& event : whole.events) {
    require(!event.name.isEmpty() && event.data.size() <= kLargestEvent);
    require(!event.name.contains('\n') && !event.name.contains('\r') && !event.data.contains('\r'));
  }
  return 0;
}
