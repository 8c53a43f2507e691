#pragma once

#include <QString>

#include <cstdint>

#include "core/hotkeys/hotkey.h"

/// A key press as the panels' key tables see it. Command is ⌘ on macOS and Ctrl elsewhere.
struct KeyPress {
  /// macOS virtual key code; `kUnknownKey` for a key without one (text from an input method).
  std::uint32_t keyCode = kUnknownKey;
  bool command = false;
  bool control = false;
  bool option = false;
  bool shift = false;
  /// What the key types, dead keys and input methods applied.
  QString characters = {};
  /// The same key's letter without modifiers, lower case; empty for keys that have none.
  QString charactersIgnoringModifiers = {};

  static constexpr std::uint32_t kUnknownKey = 0xFFFF;

  /// Whether this is the key of that letter or digit: by what it types, and by its place only on layouts whose key
  /// there types none, or B would be N on layouts that have them elsewhere.
  bool isKey(QChar letter, std::uint32_t code) const {
    const QChar typed = charactersIgnoringModifiers.size() == 1 ? charactersIgnoringModifiers.front() : QChar();
    const bool isPlain = typed.unicode() < 0x80 && typed.isLetterOrNumber();
    return isPlain ? typed == letter : keyCode == code;
  }
  bool isCommand(QChar letter, std::uint32_t code) const { return command && isKey(letter, code); }
  /// Whether `characters` is text to be added to a query: something, and nothing of it a control character.
  bool isText() const {
    if (characters.isEmpty()) return false;
    for (const QChar character : characters)
      if (character.category() == QChar::Other_Control) return false;
    return true;
  }
};

/// The key codes that the panels' tables name.
namespace keycode {
inline constexpr std::uint32_t kReturn = 36;
inline constexpr std::uint32_t kKeypadEnter = 76;
inline constexpr std::uint32_t kTab = 48;
inline constexpr std::uint32_t kSpace = 49;
inline constexpr std::uint32_t kDelete = 51;
inline constexpr std::uint32_t kForwardDelete = 117;
inline constexpr std::uint32_t kEscape = 53;
inline constexpr std::uint32_t kF10 = 109;
inline constexpr std::uint32_t kPageUp = 116;
inline constexpr std::uint32_t kPageDown = 121;
inline constexpr std::uint32_t kLeft = 123;
inline constexpr std::uint32_t kRight = 124;
inline constexpr std::uint32_t kDown = 125;
inline constexpr std::uint32_t kUp = 126;
inline constexpr std::uint32_t kS = 1;
inline constexpr std::uint32_t kC = 8;
inline constexpr std::uint32_t kE = 14;
inline constexpr std::uint32_t kO = 31;
inline constexpr std::uint32_t kP = 35;
inline constexpr std::uint32_t kV = 9;
inline constexpr std::uint32_t kN = 45;
}  // namespace keycode
