#include "platform/x11/map_reads.h"

#include <poll.h>
#include <xcb/record.h>
#include <xcb/xcbext.h>

#include <algorithm>

#include "platform/x11/xcb_reply.h"
#include "platform/x11/xcb_xkb.h"

using Clock = std::chrono::steady_clock;

namespace {

constexpr std::uint8_t kFromClient = 1;
/// How soon a request to stop is noticed.
constexpr auto kSlice = std::chrono::milliseconds(20);

xcb_record_range_t mapRequests(std::uint8_t xkbOpcode) {
  xcb_record_range_t range{};
  range.core_requests = {XCB_GET_KEYBOARD_MAPPING, XCB_GET_KEYBOARD_MAPPING};
  range.ext_requests.major = {xkbOpcode, xkbOpcode};
  range.ext_requests.minor = {XCB_XKB_GET_STATE, XCB_XKB_GET_MAP};
  return range;
}

}  // namespace

std::unique_ptr<MapReads> MapReads::watch(xcb_window_t window) {
  std::unique_ptr<MapReads> reads(new MapReads(window));
  return reads->start() ? std::move(reads) : nullptr;
}

MapReads::~MapReads() {
  if (context_ == 0) return;
  xcb_record_disable_context(control_.get(), context_);
  xcb_record_free_context(control_.get(), context_);
  xcb_flush(control_.get());
}

bool MapReads::start() {
  control_.reset(xcb_connect(nullptr, nullptr));
  data_.reset(xcb_connect(nullptr, nullptr));
  if (xcb_connection_has_error(control_.get()) || xcb_connection_has_error(data_.get())) return false;
  const auto* record = xcb_get_extension_data(data_.get(), &xcb_record_id);
  const auto* xkb = xcb_get_extension_data(control_.get(), &xcb_xkb_id);
  if (record == nullptr || !record->present || xkb == nullptr || !xkb->present) return false;
  xkbOpcode_ = xkb->major_opcode;
  const std::uint32_t context = xcb_generate_id(control_.get());
  const xcb_record_range_t range = mapRequests(xkbOpcode_);
  const auto created = xcb_record_create_context_checked(control_.get(), context, 0, 1, 1, &window_, &range);
  if (const XcbReply<xcb_generic_error_t> error{xcb_request_check(control_.get(), created)}) return false;
  context_ = context;
  enabled_ = xcb_record_enable_context(data_.get(), context_).sequence;
  xcb_flush(data_.get());
  // The first answer says that recording has begun.
  return waitForData(Clock::now() + std::chrono::milliseconds(500));
}

int MapReads::count() {
  drain();
  return reads_;
}

bool MapReads::waitForMore(int count, std::chrono::milliseconds longest, const std::stop_token& stop) {
  const auto end = Clock::now() + longest;
  for (drain(); reads_ <= count; drain()) {
    if (stop.stop_requested() || Clock::now() >= end || isBroken()) return false;
    waitForData(std::min(end, Clock::now() + kSlice));
  }
  return true;
}

void MapReads::waitForState(std::chrono::milliseconds longest) {
  const auto end = Clock::now() + longest;
  for (drain(); !stateAsked_; drain())
    if (!waitForData(end)) return;
}

bool MapReads::waitForData(Clock::time_point end) {
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
  if (left.count() <= 0 || isBroken()) return false;
  pollfd readable{xcb_get_file_descriptor(data_.get()), POLLIN, 0};
  return poll(&readable, 1, static_cast<int>(left.count())) > 0;
}

void MapReads::drain() {
  // Answers are read from the socket only by looking for events, of which this connection has none.
  const XcbReply<xcb_generic_event_t> none(xcb_poll_for_event(data_.get()));
  void* answer = nullptr;
  xcb_generic_error_t* error = nullptr;
  while (xcb_poll_for_reply(data_.get(), enabled_, &answer, &error) != 0 && (answer != nullptr || error != nullptr)) {
    const XcbReply<void> owned(answer);
    const XcbReply<xcb_generic_error_t> ownedError(error);
    if (answer != nullptr) take(answer);
    answer = nullptr;
    error = nullptr;
  }
}

void MapReads::take(const void* answer) {
  const auto* reply = static_cast<const xcb_record_enable_context_reply_t*>(answer);
  if (reply->category != kFromClient) return;
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(reply + 1);
  const std::uint8_t* const end = bytes + std::size_t{reply->length} * 4;
  // One answer may hold several requests, one after the other; a request's length is in its own header.
  while (end - bytes >= 4) {
    const bool isXkb = bytes[0] == xkbOpcode_;
    if (bytes[0] == XCB_GET_KEYBOARD_MAPPING || (isXkb && bytes[1] == XCB_XKB_GET_MAP)) {
      ++reads_;
      stateAsked_ = false;
    } else if (isXkb && bytes[1] == XCB_XKB_GET_STATE) {
      stateAsked_ = true;
    }
    const int words = bytes[2] | bytes[3] << 8;
    if (words == 0) return;
    bytes += std::ptrdiff_t{words} * 4;
  }
}
