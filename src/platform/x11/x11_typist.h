#pragma once

#include <chrono>
#include <expected>
#include <memory>
#include <optional>
#include <span>
#include <stop_token>
#include <vector>

#include "platform/x11/borrowed_keys.h"
#include "platform/x11/held_modifiers.h"
#include "platform/x11/keyboard_map.h"
#include "platform/x11/map_reads.h"
#include "platform/x11/typing_steps.h"
#include "platform/x11/xtest_keyboard.h"

/// Types into the focused window over a connection of its own; one thread.
///
/// Characters on the layout are typed with their own keys. All others are put on borrowed key codes, a bank at a time;
/// the codes are given back some time after the last key, when applications have looked at it.
class X11Typist {
 public:
  using Result = std::expected<void, KeyEventError>;

  /// Null without a display that can be typed into.
  static std::unique_ptr<X11Typist> open();

  /// Returns when the last key was sent, or soon after `stop` is requested.
  Result perform(const KeySequence& sequence, const std::stop_token& stop);
  bool isBroken() const { return keyboard_->isBroken(); }

  /// When borrowed keys are to be given back; empty when there are none.
  std::optional<std::chrono::steady_clock::time_point> giveBackTime() const;
  void giveBackKeys();

 private:
  explicit X11Typist(std::unique_ptr<XTestKeyboard> keyboard);

  void typeSteps(const std::vector<TypingStep>& steps, const std::stop_token& stop);
  void typeText(const std::vector<TypingStep>& steps, std::size_t step);
  void typeCharacter(KeyStroke stroke);
  void pressKey(const PressKey& key);
  std::optional<KeyStroke> strokeFor(char32_t character) const;
  void holdModifiers(std::uint8_t modifiers);
  bool lend(const std::vector<TypingStep>& steps, std::size_t step, std::size_t offset);
  std::vector<char32_t> missingFrom(const std::vector<TypingStep>& steps, std::size_t step, std::size_t offset,
                                    std::size_t most) const;
  void waitUntilRead();
  void settle();
  void watchFocused();
  xcb_window_t focusedWindow() const;

  std::unique_ptr<XTestKeyboard> keyboard_;
  HeldModifiers modifiers_;
  BorrowedKeys borrowed_;
  std::optional<KeyboardMap> map_;
  std::unique_ptr<MapReads> reads_;
  /// The bank that holds what is typed now.
  std::size_t bank_ = 0;
  std::uint8_t held_ = 0;
  int readsAtChange_ = 0;
  bool readsAtOnce_ = false;
  std::size_t skipped_ = 0;
  std::chrono::steady_clock::time_point lastLent_;
};
