#pragma once

#include <cstdint>
#include <span>

/// One key of the keyboard under its names on every side. macOS codes are positions on an ANSI keyboard.
struct KeyCode {
  std::uint32_t mac;
  /// What a key cap shows; null for keys that are not named.
  const char16_t* name;
  /// The key in words, null when the name is word enough.
  const char16_t* word;
  /// Qt::Key of the key without modifiers on the US layout.
  int qtKey;
  /// X keysym without modifiers on the US layout.
  std::uint32_t keysym;
  /// The key's position: evdev code plus 8, the key code of X servers.
  std::uint32_t position;
};

std::span<const KeyCode> keyCodes();
/// Null when the table has no such key.
const KeyCode* findKeyCode(std::uint32_t mac);
const KeyCode* findKeyByQtKey(int qtKey);
const KeyCode* findKeyByPosition(std::uint32_t position);
