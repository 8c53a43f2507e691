#pragma once

#include <chrono>
#include <optional>
#include <set>
#include <stop_token>

#include "platform/x11/keyboard_map.h"
#include "platform/x11/xtest_keyboard.h"

/// Keeps the modifiers that the user holds out of what is typed, and gives them back afterwards.
///
/// Waits a moment for the user to let go, then releases the keys for him. What he does with them meanwhile is seen, so
/// that only keys that are still down are pressed again. Locked modifiers (Caps Lock) are switched off for the time.
class HeldModifiers {
 public:
  explicit HeldModifiers(XTestKeyboard& keyboard) : keyboard_(keyboard) {}

  /// Whose release is waited for: a key of a shortcut that is still down keeps the keyboard for whoever has the
  /// shortcut, so that no other chord arrives.
  enum class Keys { modifiers, all };

  /// Whether no modifier is held any more; `neutralKey` is a key that types nothing (0: none), `stop` ends waiting.
  bool lift(const KeyboardMap& map, xcb_keycode_t neutralKey, Keys keys, const std::stop_token& stop);
  /// Lifts what was pressed since; called between chunks.
  void liftNewlyHeld(const KeyboardMap& map);
  /// Presses again what the user still holds. Then `attend` is to be called at each `dueTime`.
  void giveBack(const KeyboardMap& map);

  std::optional<std::chrono::steady_clock::time_point> dueTime() const;
  /// Ends XTEST's part in keys that were given back once the user lets go: later presses of them by XTEST, ours or
  /// another program's, would have no effect otherwise.
  void attend(const KeyboardMap& map);

 private:
  void waitForUser(const KeyboardMap& map, std::chrono::milliseconds longest, const std::stop_token& stop);
  bool isAnyHeld(const KeyboardMap& map);
  std::uint8_t held(const KeyboardMap& map);
  void releaseKeys(const KeyboardMap& map);
  void switchLocksOff(const KeyboardMap& map);
  void follow(const KeyboardMap& map);
  bool isHolding(const KeyboardMap& map, xcb_keycode_t code) const;

  XTestKeyboard& keyboard_;
  xcb_keycode_t neutralKey_ = 0;
  Keys keys_ = Keys::modifiers;
  /// Modifier keys that the user holds down while the server has them up.
  std::set<xcb_keycode_t> lifted_;
  /// Given back, and down as far as XTEST is concerned.
  std::set<xcb_keycode_t> given_;
  std::chrono::steady_clock::time_point attendUntil_;
  std::uint8_t locks_ = 0;
};
