#pragma once

#include <QRectF>

#include <cstdint>
#include <vector>

#include "platform/key_legends.h"

/// Where one key is on the drawn keyboard.
struct KeyPlace {
  /// macOS key code, which names a position.
  std::uint32_t keyCode = 0;
  /// In units of one letter key with the gap around it.
  QRectF area;
};

/// macOS key codes of keys that carry no shortcut but are drawn.
namespace keycode {
inline constexpr std::uint32_t kIsoKey = 10;
inline constexpr std::uint32_t kRightCommand = 54;
inline constexpr std::uint32_t kCommand = 55;
inline constexpr std::uint32_t kLeftShift = 56;
inline constexpr std::uint32_t kCapsLock = 57;
inline constexpr std::uint32_t kOption = 58;
inline constexpr std::uint32_t kControl = 59;
inline constexpr std::uint32_t kRightShift = 60;
inline constexpr std::uint32_t kRightOption = 61;
inline constexpr std::uint32_t kRightControl = 62;
inline constexpr std::uint32_t kFunction = 63;
inline constexpr std::uint32_t kMenu = 110;
inline constexpr std::uint32_t kInsert = 114;
}  // namespace keycode

/// Columns and rows that all keys together take, in the same units.
inline constexpr QSizeF kKeyboardUnits(18.25, 6.25);

/// The keys of a keyboard without a number pad, row by row from the top left. With `iso`, a short left Shift makes room
/// for the key that European keyboards have beside it.
std::vector<KeyPlace> keyPlaces(KeyboardKind kind, bool iso);
/// The Carbon bit that a key holds; 0 for keys that are no modifiers.
std::uint32_t carbonModifierOf(std::uint32_t keyCode);
