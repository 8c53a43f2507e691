#include "platform/x11/character_lender.h"

#include <algorithm>
#include <thread>

#include "base/logging.h"
#include "platform/x11/pacing.h"
#include "platform/x11/xcb_reply.h"

using namespace std::chrono_literals;

namespace {

/// What a change of the map needs to reach the programs; 20 ms were always enough for those that do not hang.
constexpr auto kSettle = 25ms;
/// How long a program that hangs is waited for.
constexpr auto kLongestRead = 10s;
/// A program that reads the map at the next key it looks at may have looked at few of the keys before by then.
constexpr auto kAfterRead = 10ms;
/// Between typing with a bank and refilling it, where nothing tells whether the program has read the map.
constexpr auto kBlindWait = 250ms;
/// Keys are given back this long after the program was seen to be through, and then again as much later.
constexpr auto kBeforeGivingBack = 300ms;
constexpr auto kRetry = 100ms;
/// At the end of the process; a program that hangs for longer may lose characters.
constexpr auto kLongestFarewell = 2s;

}  // namespace

CharacterLender::CharacterLender(XTestKeyboard& keyboard)
    : keyboard_(keyboard), borrowed_(keyboard.connection(), keyboard.root()) {
  borrowed_.recover();
}

bool CharacterLender::lend(std::span<const char32_t> characters, const std::stop_token& stop) {
  keyboard_.sync();
  waitUntilRead(stop);
  watchFocused();
  const std::size_t next = nextBank();
  readsAtChange_ = reads_ ? reads_->count() : 0;
  if (stop.stop_requested() || !borrowed_.fill(next, characters)) return false;
  bank_ = next;
  settle(stop);
  return true;
}

void CharacterLender::waitUntilRead(const std::stop_token& stop) {
  if (!borrowed_.isLending()) return;
  if (!reads_ || neverReads_)
    pacing::sleep(kBlindWait, stop);
  else if (!reads_->waitForMore(readsAtChange_, kLongestRead, stop))
    neverReads_ = true;
  else if (!readsAtOnce_)
    pacing::sleep(kAfterRead);
}

void CharacterLender::watchFocused() {
  const xcb_window_t window = focusedWindow();
  if (reads_ && reads_->window() == window) return;
  reads_ = window == XCB_NONE ? nullptr : MapReads::watch(window);
  readsAtOnce_ = false;
  neverReads_ = false;
}

void CharacterLender::settle(const std::stop_token& stop) {
  const auto start = Clock::now();
  const auto longest = readsAtOnce_ && !neverReads_ ? std::chrono::milliseconds(kLongestRead) : kSettle;
  if (reads_ && reads_->waitForMore(readsAtChange_, longest, stop)) {
    readsAtOnce_ = true;
    reads_->waitForState(kSettle);
  }
  pacing::sleep(std::max<Clock::duration>(0ms, start + kSettle - Clock::now()));
}

void CharacterLender::finish() {
  if (!borrowed_.isLending()) return;
  // A change of nothing, and a key that types nothing: programs of either kind read the map when they get here.
  readsAtChange_ = reads_ ? reads_->count() : 0;
  borrowed_.touch(bank_);
  keyboard_.tap(borrowed_.neutralKey());
  keyboard_.sync();
  isMarkRead_ = false;
  finished_ = Clock::now();
  due_ = finished_ + kBeforeGivingBack;
}

std::optional<CharacterLender::Clock::time_point> CharacterLender::dueTime() const {
  return borrowed_.isLending() ? std::optional(due_) : std::nullopt;
}

void CharacterLender::giveBackIfRead() {
  if (!borrowed_.isLending()) return;
  if (isMarkRead_ || Clock::now() > finished_ + kLongestRead) {
    giveBack();
    return;
  }
  isMarkRead_ = isRead();
  due_ = Clock::now() + (isMarkRead_ ? std::chrono::milliseconds(kBeforeGivingBack) : kRetry);
}

bool CharacterLender::isRead() {
  if (reads_ && !neverReads_) return reads_->count() > readsAtChange_;
  return Clock::now() > finished_ + 2 * kBeforeGivingBack;
}

void CharacterLender::giveBackSoon() {
  while (borrowed_.isLending() && Clock::now() < finished_ + kLongestFarewell) {
    std::this_thread::sleep_until(due_);
    giveBackIfRead();
  }
  giveBack();
}

void CharacterLender::giveBack() {
  borrowed_.giveBack();
  reads_.reset();
}

xcb_window_t CharacterLender::focusedWindow() const {
  xcb_connection_t* connection = keyboard_.connection();
  const auto cookie = xcb_get_input_focus(connection);
  const XcbReply<xcb_get_input_focus_reply_t> focus(xcb_get_input_focus_reply(connection, cookie, nullptr));
  if (!focus) return XCB_NONE;
  if (focus->focus != XCB_INPUT_FOCUS_POINTER_ROOT && focus->focus != keyboard_.root()) return focus->focus;
  const auto pointerCookie = xcb_query_pointer(connection, keyboard_.root());
  const XcbReply<xcb_query_pointer_reply_t> pointer(xcb_query_pointer_reply(connection, pointerCookie, nullptr));
  return pointer ? pointer->child : XCB_NONE;
}
