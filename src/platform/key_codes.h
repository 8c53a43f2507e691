#pragma once

#include <qnamespace.h>

#include <cstdint>
#include <functional>
#include <optional>
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

/// The key to press for a chord of `keyCode`: the one that has its letter, as `characterOn` tells of a key, else the
/// one at its position.
std::uint32_t keyForChord(std::uint32_t keyCode, const std::function<char16_t(std::uint32_t)>& characterOn);

/// A key press as the toolkit reports it: its symbol, its position and the system's own number.
struct ReportedKey {
  int qtKey;
  std::uint32_t scanCode;
  std::uint32_t virtualKey;
};

/// The macOS code of a key: the system's own on macOS; elsewhere by the key's symbol, else by its position. Null when
/// neither is in the table.
std::optional<std::uint32_t> macKeyCode(const ReportedKey& key);
/// Which of the keyboard's Control, Option, Shift and Command keys are held, as Carbon bits. On keyboards without those
/// names they are Ctrl, Alt, Shift and Super.
std::uint32_t carbonModifiers(Qt::KeyboardModifiers modifiers);
