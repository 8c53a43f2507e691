#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "base/event_stream.h"

namespace {

constexpr qsizetype kLargestEvent = 512;

void require(bool holds) {
  if (!holds) std::abort();
}

/// In pieces whose sizes follow from the bytes themselves.
std::vector<StreamEvent> readInPieces(EventStreamReader& reader, QByteArrayView bytes) {
  std::vector<StreamEvent> all;
  auto state = static_cast<std::uint32_t>(bytes.size()) + 1;
  while (!bytes.isEmpty()) {
    state = state * 1664525 + 1013904223 + static_cast<unsigned char>(bytes.front());
    const qsizetype size = std::min<qsizetype>(bytes.size(), 1 + (state >> 24) % 9);
    // A copy of its own, so that reading beyond it is noticed.
    const std::vector<char> copy(bytes.begin(), bytes.begin() + size);
    std::ranges::move(reader.read(QByteArrayView(copy.data(), size)), std::back_inserter(all));
    bytes = bytes.sliced(size);
  }
  return all;
}

}  // namespace

/// However a stream is cut, its events are the same, and none is larger than it may be.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const QByteArrayView bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
  EventStreamReader whole(kLargestEvent);
  EventStreamReader pieces(kLargestEvent);
  const std::vector<StreamEvent> events = whole.read(bytes);
  require(readInPieces(pieces, bytes) == events);
  require(whole.hasOverflown() == pieces.hasOverflown());
  for (const StreamEvent& event : events) require(event.data.size() <= kLargestEvent && !event.name.isEmpty());
  return 0;
}
