#include "platform/x11/keyboard_map.h"

#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon.h>

#include <algorithm>
#include <bit>
#include <cstring>

#include "platform/x11/xcb_reply.h"
#include "platform/x11/xcb_xkb.h"

namespace {

/// Walks over the packed structures of a reply.
class Cursor {
 public:
  explicit Cursor(const void* start) : at_(static_cast<const std::uint8_t*>(start)) {}

  template <class T>
  T take() {
    T value;
    std::memcpy(&value, at_, sizeof value);
    at_ += sizeof value;
    return value;
  }
  void skip(std::size_t bytes) { at_ += bytes; }

 private:
  const std::uint8_t* at_;
};

/// The character a symbol types: none for dead keys, functions and the keypad (whose digits depend on Num Lock).
char32_t characterOf(std::uint32_t symbol) {
  if (symbol == XKB_KEY_Return) return U'\n';
  if (symbol == XKB_KEY_Tab) return U'\t';
  if (symbol >= XKB_KEY_ISO_Lock && symbol <= XKB_KEY_Delete) return 0;
  const char32_t character = xkb_keysym_to_utf32(symbol);
  return character < 0x20 || character == 0x7f ? 0 : character;
}

KeyType takeType(Cursor& cursor) {
  const auto header = cursor.take<xcb_xkb_key_type_t>();
  KeyType type{header.mods_mask, header.numLevels, {}};
  for (int entry = 0; entry < header.nMapEntries; ++entry) {
    const auto mapped = cursor.take<xcb_xkb_kt_map_entry_t>();
    if (mapped.active) type.entries.push_back({mapped.mods_mask, mapped.level});
  }
  if (header.hasPreserve) cursor.skip(header.nMapEntries * sizeof(xcb_xkb_mod_def_t));
  return type;
}

KeySymbols takeKey(Cursor& cursor) {
  const auto header = cursor.take<xcb_xkb_key_sym_map_t>();
  KeySymbols key;
  std::ranges::copy(header.kt_index, key.types.begin());
  key.groupInfo = header.groupInfo;
  key.width = header.width;
  for (int symbol = 0; symbol < header.nSyms; ++symbol) key.symbols.push_back(cursor.take<std::uint32_t>());
  return key;
}

}  // namespace

bool KeySymbols::isEmpty() const {
  return std::ranges::all_of(symbols, [](std::uint32_t symbol) { return symbol == XKB_KEY_NoSymbol; });
}

std::optional<KeyboardMap> KeyboardMap::read(xcb_connection_t* connection, const std::bitset<256>& ignored) {
  KeyboardMap map;
  if (!map.readMap(connection) || !map.readState(connection) || !map.readModifiers(connection)) return {};
  map.findModifierKeys();
  map.findCharacters(ignored);
  return map;
}

bool KeyboardMap::readMap(xcb_connection_t* connection) {
  constexpr auto wanted = XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_KEY_ACTIONS;
  const auto cookie =
      xcb_xkb_get_map(connection, XCB_XKB_ID_USE_CORE_KBD, wanted, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
  const XcbReply<xcb_xkb_get_map_reply_t> reply(xcb_xkb_get_map_reply(connection, cookie, nullptr));
  if (!reply) return false;
  minimum_ = reply->minKeyCode;
  maximum_ = reply->maxKeyCode;
  Cursor cursor(reply.get() + 1);
  for (int index = 0; index < reply->nTypes; ++index) types_.push_back(takeType(cursor));
  for (std::size_t index = 0; index < reply->nKeySyms; ++index) keys_.at(reply->firstKeySym + index) = takeKey(cursor);
  for (std::size_t index = 0; index < reply->nKeyActions; ++index)
    acting_.set(reply->firstKeyAction + index, cursor.take<std::uint8_t>() != 0);
  return true;
}

bool KeyboardMap::readState(xcb_connection_t* connection) {
  const auto cookie = xcb_xkb_get_state(connection, XCB_XKB_ID_USE_CORE_KBD);
  const XcbReply<xcb_xkb_get_state_reply_t> reply(xcb_xkb_get_state_reply(connection, cookie, nullptr));
  if (reply) group_ = reply->group;
  return reply != nullptr;
}

bool KeyboardMap::readModifiers(xcb_connection_t* connection) {
  const auto cookie = xcb_get_modifier_mapping(connection);
  const XcbReply<xcb_get_modifier_mapping_reply_t> reply(xcb_get_modifier_mapping_reply(connection, cookie, nullptr));
  if (!reply) return false;
  const xcb_keycode_t* codes = xcb_get_modifier_mapping_keycodes(reply.get());
  const int count = xcb_get_modifier_mapping_keycodes_length(reply.get());
  for (int index = 0; index < count; ++index)
    if (codes[index] != 0)
      modifiers_[codes[index]] |= static_cast<std::uint8_t>(1U << (index / reply->keycodes_per_modifier));
  return true;
}

void KeyboardMap::findModifierKeys() {
  for (int code = maximum_; code >= minimum_; --code) {
    const auto key = static_cast<xcb_keycode_t>(code);
    const std::uint32_t plain = symbol(keys_[key], 0);
    if (plain == XKB_KEY_Num_Lock) numLock_ = modifiers_[key];
    if (modifiers_[key] == XCB_MOD_MASK_SHIFT && (plain == XKB_KEY_Shift_L || shift_ == 0) && !isLockKey(key))
      shift_ = key;
    if (plain == XKB_KEY_ISO_Level3_Shift && std::has_single_bit(modifiers_[key])) level3_ = key;
  }
}

bool KeyboardMap::isLockKey(xcb_keycode_t code) const {
  const std::uint32_t plain = symbol(keys_[code], 0);
  return (modifiers_[code] & XCB_MOD_MASK_LOCK) != 0 || plain == XKB_KEY_Num_Lock || plain == XKB_KEY_Scroll_Lock ||
         plain == XKB_KEY_Caps_Lock || plain == XKB_KEY_Shift_Lock;
}

void KeyboardMap::findCharacters(const std::bitset<256>& ignored) {
  for (int code = minimum_; code <= maximum_; ++code)
    if (!ignored[static_cast<std::size_t>(code)]) addKey(static_cast<xcb_keycode_t>(code));
}

void KeyboardMap::addKey(xcb_keycode_t code) {
  const KeySymbols& key = keys_[code];
  if (key.groups() == 0 || modifiers_[code] != 0) return;
  const std::size_t typeIndex = key.types[static_cast<std::size_t>(group(key))];
  if (typeIndex >= types_.size()) return;
  const KeyType& type = types_[typeIndex];
  for (int level = 0; level < std::min(type.levels, key.width); ++level) {
    const char32_t character = characterOf(symbol(key, level));
    const auto modifiers = modifiersFor(type, level);
    if (character == 0 || !modifiers) continue;
    const KeyStroke stroke{code, *modifiers, symbol(key, level)};
    const auto [known, isNew] = characters_.try_emplace(character, stroke);
    if (!isNew && std::popcount(*modifiers) < std::popcount(known->second.modifiers)) known->second = stroke;
  }
}

int KeyboardMap::group(const KeySymbols& key) const {
  const int groups = key.groups();
  if (group_ < groups) return group_;
  constexpr int clamped = 0x40;
  return (key.groupInfo & 0xc0) == clamped ? groups - 1 : group_ % groups;
}

std::uint32_t KeyboardMap::symbol(const KeySymbols& key, int level) const {
  if (key.groups() == 0 || level >= key.width) return XKB_KEY_NoSymbol;
  const auto place = static_cast<std::size_t>(group(key)) * key.width + static_cast<std::size_t>(level);
  return place < key.symbols.size() ? key.symbols[place] : XKB_KEY_NoSymbol;
}

std::optional<std::uint8_t> KeyboardMap::modifiersFor(const KeyType& type, int level) const {
  if (level == 0) return std::uint8_t{0};
  const int held = (shift_ != 0 ? XCB_MOD_MASK_SHIFT : 0) | level3Modifier();
  for (const auto& entry : type.entries)
    if (entry.level == level && (entry.modifiers & ~held) == 0) return entry.modifiers;
  return {};
}

std::optional<KeyStroke> KeyboardMap::find(char32_t character) const {
  const auto found = characters_.find(character);
  return found == characters_.end() ? std::nullopt : std::optional(found->second);
}

xcb_keycode_t KeyboardMap::findSymbol(std::uint32_t wanted) const {
  for (int code = minimum_; code <= maximum_; ++code)
    if (symbol(keys_[static_cast<std::size_t>(code)], 0) == wanted) return static_cast<xcb_keycode_t>(code);
  return 0;
}

std::optional<std::uint8_t> KeyboardMap::fourLevelType() const {
  const std::uint8_t shift = XCB_MOD_MASK_SHIFT;
  const std::uint8_t level3 = level3Modifier();
  if (shift_ == 0 || level3 == 0) return {};
  for (std::size_t index = 0; index < types_.size(); ++index) {
    const KeyType& type = types_[index];
    if (type.levels != 4 || type.modifiers != (shift | level3)) continue;
    const bool isPlain = modifiersFor(type, 1) == shift && modifiersFor(type, 2) == level3 &&
                         modifiersFor(type, 3) == static_cast<std::uint8_t>(shift | level3);
    if (isPlain) return static_cast<std::uint8_t>(index);
  }
  return {};
}
