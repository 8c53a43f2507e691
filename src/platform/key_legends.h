#pragma once

#include <QString>

#include <cstdint>
#include <functional>

#include "platform/carbon_modifiers.h"

/// The two families of keyboards, which differ in their bottom row.
enum class KeyboardKind { pc, mac };

/// The user's keyboard as it is labelled. As it stands, of a PC keyboard with the US layout. Main thread only.
class KeyLegends {
 public:
  virtual ~KeyLegends() = default;

  virtual KeyboardKind kind() const { return KeyboardKind::pc; }
  /// What the key at a position, given as its macOS key code, types without modifiers; empty where the key types
  /// nothing or the layout is not known.
  virtual QString legend([[maybe_unused]] std::uint32_t position) const { return {}; }
  /// The position of the key with which combinations of `keyCode` are pressed.
  virtual std::uint32_t position(std::uint32_t keyCode) const { return keyCode; }
  /// Calls `changed` on the main thread after each change of the layout; an empty one ends that.
  // NOLINTNEXTLINE(performance-unnecessary-value-param): implementations keep it
  virtual void watch([[maybe_unused]] std::function<void()> changed) {}
  /// The word on a modifier key, by its Carbon bit.
  virtual QString modifierWord(std::uint32_t carbonModifier) const {
    switch (carbonModifier) {
      case carbon::kControl:
        return QStringLiteral("Ctrl");
      case carbon::kOption:
        return QStringLiteral("Alt");
      case carbon::kShift:
        return QStringLiteral("Shift");
      default:
        return QStringLiteral("Super");
    }
  }
};
