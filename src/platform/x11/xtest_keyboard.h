#pragma once

#include <xcb/xcb.h>

#include <array>
#include <deque>
#include <memory>
#include <stop_token>
#include <vector>

#include "platform/x11/keyboard_map.h"

/// A key that somebody pressed or released.
struct KeyChange {
  xcb_keycode_t code = 0;
  bool pressed = false;
  bool operator==(const KeyChange&) const = default;
};

/// A connection of its own that presses keys through XTEST and sees what the user's keyboards do meanwhile.
/// One thread at a time.
class XTestKeyboard {
 public:
  /// Null without a display or without XTEST, XKB and XInput 2.
  static std::unique_ptr<XTestKeyboard> open();

  xcb_connection_t* connection() const { return connection_.get(); }
  xcb_window_t root() const { return root_; }
  bool isBroken() const { return xcb_connection_has_error(connection_.get()) != 0; }

  void press(xcb_keycode_t code) { fake(code, true); }
  void release(xcb_keycode_t code) { fake(code, false); }
  void tap(xcb_keycode_t code) {
    press(code);
    release(code);
  }
  /// Returns when the server has performed everything so far.
  void sync();

  /// Returns when `neutralKey` has gone down and up and come back, if keys are watched: all that others did before is
  /// known then, also when a grab has stopped the keyboard for a moment. 0: as `sync`.
  void settle(xcb_keycode_t neutralKey);

  /// Whether keys reach the focused window, soon if not at once: a shortcut's owner has the keyboard while its key is
  /// down. False: another program keeps it and would get what is typed. `stop` ends waiting.
  bool awaitUngrabbed(const std::stop_token& stop);

  /// Starts or ends noticing other people's keys. They pile up unread, so that it should not go on while nothing is
  /// typed.
  void watchKeys(bool wanted);
  /// What others did with keys since the last call, in order, up to the last `sync`. Own keys are left out.
  std::vector<KeyChange> takeForeignKeys();
  /// The modifiers that keys hold down at this moment, Shift being bit 0.
  std::uint8_t heldModifiers();
  std::uint8_t lockedModifiers();
  /// Ends latched modifiers and sets the locked ones of `affected` to `locked`.
  void setLocked(std::uint8_t affected, std::uint8_t locked);
  std::array<bool, 256> keysDown();

 private:
  struct Disconnect {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
  };
  XTestKeyboard() = default;
  bool prepare(int screen);
  bool prepareInput();
  bool isGrabbed();
  void findXTestDevice();
  void fake(xcb_keycode_t code, bool pressed);
  void collect();
  bool isOwn(std::uint16_t source, const KeyChange& key);

  std::unique_ptr<xcb_connection_t, Disconnect> connection_;
  xcb_window_t root_ = XCB_NONE;
  std::uint8_t inputOpcode_ = 0;
  std::uint16_t xtestDevice_ = 0;
  /// Sent and not yet seen coming back, oldest first.
  std::deque<KeyChange> own_;
  std::vector<KeyChange> foreign_;
};
