#include "platform/x11/held_modifiers.h"

#include <algorithm>

#include "platform/x11/pacing.h"

using namespace std::chrono_literals;

namespace {

/// Long enough for a hand to leave the shortcut that started the typing.
constexpr auto kWaitForUser = 400ms;
/// For a server that does not let XTEST release another keyboard's keys.
constexpr auto kWaitWhenNotLifted = 5s;
constexpr auto kPoll = 5ms;
/// After typing, how long a hand that still holds a modifier is watched, and how often.
constexpr auto kAttention = 10s;
constexpr auto kAttend = 10ms;

}  // namespace

bool HeldModifiers::lift(const KeyboardMap& map, xcb_keycode_t neutralKey, Keys keys, const std::stop_token& stop) {
  neutralKey_ = neutralKey;
  keys_ = keys;
  lifted_.clear();
  keyboard_.watchKeys(true);
  // A modifier that goes down and up alone means something to many programs (Alt opens a menu, Super a launcher); a key
  // in between makes it part of a chord. It also makes XTEST the current keyboard before the first character.
  keyboard_.settle(neutralKey_);
  waitForUser(map, kWaitForUser, stop);
  releaseKeys(map);
  // XTEST may have keys of an earlier run down that the user's own keyboard has released since.
  keyboard_.release(map.shiftKey());
  keyboard_.release(map.level3Key());
  for (const xcb_keycode_t code : given_) keyboard_.release(code);
  given_.clear();
  switchLocksOff(map);
  keyboard_.sync();
  follow(map);
  if (held(map) != 0) waitForUser(map, kWaitWhenNotLifted, stop);
  // The other keys of the chord go up with the last modifier, or a moment later; a key that is stuck is not waited for.
  if (keys_ == Keys::all) waitForUser(map, kWaitForUser, stop);
  return held(map) == 0;
}

void HeldModifiers::waitForUser(const KeyboardMap& map, std::chrono::milliseconds longest,
                                const std::stop_token& stop) {
  const auto end = std::chrono::steady_clock::now() + longest;
  while (isAnyHeld(map) && std::chrono::steady_clock::now() < end && !stop.stop_requested()) pacing::sleep(kPoll);
}

bool HeldModifiers::isAnyHeld(const KeyboardMap& map) {
  if (held(map) != 0) return true;
  return keys_ == Keys::all && std::ranges::count(keyboard_.keysDown(), true) > 0;
}

std::uint8_t HeldModifiers::held(const KeyboardMap& map) {
  const int counted = 0xff & ~(XCB_MOD_MASK_LOCK | map.numLockModifier());
  return static_cast<std::uint8_t>(keyboard_.heldModifiers() & counted);
}

bool HeldModifiers::isHolding(const KeyboardMap& map, xcb_keycode_t code) const {
  return map.modifiersOf(code) != 0 && !map.isLockKey(code);
}

void HeldModifiers::releaseKeys(const KeyboardMap& map) {
  const auto down = keyboard_.keysDown();
  for (std::size_t index = 0; index < down.size(); ++index) {
    const auto code = static_cast<xcb_keycode_t>(index);
    const bool isModifier = isHolding(map, code);
    if (!down[index] || (!isModifier && keys_ == Keys::modifiers)) continue;
    keyboard_.release(code);
    if (isModifier) lifted_.insert(code);
  }
}

void HeldModifiers::switchLocksOff(const KeyboardMap& map) {
  locks_ = static_cast<std::uint8_t>(keyboard_.lockedModifiers() & ~map.numLockModifier());
  keyboard_.setLocked(locks_, 0);
}

void HeldModifiers::liftNewlyHeld(const KeyboardMap& map) {
  const auto before = lifted_;
  follow(map);
  for (const xcb_keycode_t code : lifted_) {
    if (before.contains(code)) continue;
    keyboard_.tap(neutralKey_);
    keyboard_.release(code);
  }
}

void HeldModifiers::follow(const KeyboardMap& map) {
  for (const KeyChange& key : keyboard_.takeForeignKeys()) {
    if (!isHolding(map, key.code)) continue;
    if (key.pressed)
      lifted_.insert(key.code);
    else
      lifted_.erase(key.code);
  }
}

void HeldModifiers::giveBack(const KeyboardMap& map) {
  keyboard_.settle(neutralKey_);
  // What was pressed since the last character was never lifted: it may belong to the next shortcut already.
  for (const KeyChange& key : keyboard_.takeForeignKeys()) lifted_.erase(key.code);
  const auto pressed = lifted_;
  for (const xcb_keycode_t code : pressed) keyboard_.press(code);
  if (!pressed.empty()) keyboard_.tap(neutralKey_);
  if (locks_ != 0) keyboard_.setLocked(locks_, locks_);
  given_ = pressed;
  attendUntil_ = std::chrono::steady_clock::now() + kAttention;
  attend(map);
}

std::optional<std::chrono::steady_clock::time_point> HeldModifiers::dueTime() const {
  if (given_.empty()) return {};
  return std::chrono::steady_clock::now() + kAttend;
}

void HeldModifiers::attend(const KeyboardMap& map) {
  keyboard_.sync();
  follow(map);
  // Let go before the press, the key is down only because of it: the release also makes up for that.
  std::erase_if(given_, [this](xcb_keycode_t code) {
    if (lifted_.contains(code)) return false;
    keyboard_.release(code);
    return true;
  });
  if (std::chrono::steady_clock::now() > attendUntil_) given_.clear();
  if (given_.empty()) keyboard_.watchKeys(false);
}
