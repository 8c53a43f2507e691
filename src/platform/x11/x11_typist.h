#pragma once

#include <chrono>
#include <expected>
#include <memory>
#include <optional>
#include <span>
#include <stop_token>
#include <vector>

#include "platform/typing_steps.h"
#include "platform/x11/character_lender.h"
#include "platform/x11/held_modifiers.h"
#include "platform/x11/keyboard_map.h"
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

  /// When `attend` is to be called next; empty when nothing is left to do.
  std::optional<std::chrono::steady_clock::time_point> dueTime() const;
  /// Gives back what typing has taken, keys and modifiers, as it becomes possible.
  void attend();
  /// For the end of the process.
  void finish();

 private:
  explicit X11Typist(std::unique_ptr<XTestKeyboard> keyboard);

  void typeSteps(const std::vector<TypingStep>& steps, const std::stop_token& stop);
  void typeText(const std::vector<TypingStep>& steps, std::size_t step, const std::stop_token& stop);
  void typeCharacter(KeyStroke stroke);
  void pressKey(const PressKey& key);
  std::optional<KeyStroke> strokeFor(char32_t character) const;
  void holdModifiers(std::uint8_t modifiers);
  std::vector<char32_t> missingFrom(const std::vector<TypingStep>& steps, std::size_t step, std::size_t offset) const;

  std::unique_ptr<XTestKeyboard> keyboard_;
  HeldModifiers modifiers_;
  CharacterLender lender_;
  std::optional<KeyboardMap> map_;
  std::uint8_t held_ = 0;
  std::size_t skipped_ = 0;
};
