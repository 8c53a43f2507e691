#pragma once

#include <QJsonValue>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <functional>

#include "platform/carbon_modifiers.h"

/// A key combination: a macOS virtual key code and a Carbon modifier mask.
struct Hotkey {
  std::uint32_t keyCode = 0;
  std::uint32_t carbonModifiers = 0;

  bool operator==(const Hotkey&) const = default;

  /// Modifier glyphs in the order ⌃⌥⇧⌘, then the key's name: "⌃⌥U".
  QString display() const;
  /// The same parts one by one, for key caps.
  QStringList keyCaps() const;
  /// The combination in words, "Ctrl+Alt+U", for tooltips where the glyphs are not at home.
  QString spelled() const;
  /// F1 to F12, the only keys that may be bound without a modifier.
  bool isFunctionKey() const;
};

template <>
struct std::hash<Hotkey> {
  std::size_t operator()(const Hotkey& hotkey) const noexcept {
    return std::hash<std::uint64_t>()(std::uint64_t{hotkey.keyCode} << 32 | hotkey.carbonModifiers);
  }
};

/// The name of a key on the US layout; "key" and the number for a code that has none.
QString keyName(std::uint32_t keyCode);

bool decode(const QJsonValue& value, Hotkey& out);
QJsonValue encode(const Hotkey& hotkey);
