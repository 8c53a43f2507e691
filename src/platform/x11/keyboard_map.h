#pragma once

#include <xcb/xcb.h>

#include <array>
#include <bitset>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

/// A key with the real modifiers (Shift, the one of level 3) that must be held with it, and the keysym that it has
/// then.
struct KeyStroke {
  xcb_keycode_t code = 0;
  std::uint8_t modifiers = 0;
  std::uint32_t symbol = 0;
};

/// What a key has in the server's map: the symbols of all groups and levels, with the type of each group.
struct KeySymbols {
  std::array<std::uint8_t, 4> types{};
  std::uint8_t groupInfo = 0;
  std::uint8_t width = 0;
  std::vector<std::uint32_t> symbols;

  bool operator==(const KeySymbols&) const = default;
  int groups() const { return groupInfo & 0x0f; }
  bool isEmpty() const;
};

/// Which level of a key the real modifiers choose.
struct KeyType {
  struct Entry {
    std::uint8_t modifiers;
    std::uint8_t level;
  };

  std::uint8_t modifiers = 0;
  std::uint8_t levels = 0;
  std::vector<Entry> entries;
};

/// The server's keyboard map at one moment, and how each character is typed on its current layout.
class KeyboardMap {
 public:
  /// Characters on the keys in `ignored` do not count. Empty when the server does not answer.
  static std::optional<KeyboardMap> read(xcb_connection_t* connection, const std::bitset<256>& ignored);

  /// The stroke with the fewest modifiers.
  std::optional<KeyStroke> find(char32_t character) const;
  /// The key that has `symbol` without modifiers, 0 for none.
  xcb_keycode_t findSymbol(std::uint32_t symbol) const;

  const KeySymbols& symbols(xcb_keycode_t code) const { return keys_[code]; }
  xcb_keycode_t minimumCode() const { return minimum_; }
  xcb_keycode_t maximumCode() const { return maximum_; }
  /// The real modifiers that the key sets, 0 for a key that types.
  std::uint8_t modifiersOf(xcb_keycode_t code) const { return modifiers_[code]; }
  /// Whether the server itself does something when the key is pressed.
  bool isActing(xcb_keycode_t code) const { return acting_[code]; }
  /// Whether the key switches a state on and off instead of holding it: Caps Lock and its like.
  bool isLockKey(xcb_keycode_t code) const;
  /// The keys to hold for Shift and for the third level; 0 when there is none.
  xcb_keycode_t shiftKey() const { return shift_; }
  xcb_keycode_t level3Key() const { return level3_; }
  std::uint8_t level3Modifier() const { return level3_ == 0 ? 0 : modifiers_[level3_]; }
  /// The modifier of Num Lock, 0 when there is none.
  std::uint8_t numLockModifier() const { return numLock_; }
  /// The type whose four levels are plain, Shift, level 3 and both; empty when the map has none.
  std::optional<std::uint8_t> fourLevelType() const;

 private:
  bool readMap(xcb_connection_t* connection);
  bool readState(xcb_connection_t* connection);
  bool readModifiers(xcb_connection_t* connection);
  void findModifierKeys();
  void findCharacters(const std::bitset<256>& ignored);
  void addKey(xcb_keycode_t code);
  int group(const KeySymbols& key) const;
  std::uint32_t symbol(const KeySymbols& key, int level) const;
  std::optional<std::uint8_t> modifiersFor(const KeyType& type, int level) const;

  std::vector<KeyType> types_;
  std::array<KeySymbols, 256> keys_;
  std::array<std::uint8_t, 256> modifiers_{};
  std::bitset<256> acting_;
  std::unordered_map<char32_t, KeyStroke> characters_;
  xcb_keycode_t minimum_ = 8;
  xcb_keycode_t maximum_ = 255;
  int group_ = 0;
  xcb_keycode_t shift_ = 0;
  xcb_keycode_t level3_ = 0;
  std::uint8_t numLock_ = 0;
};
