#include "platform/x11/borrowed_keys.h"

#include <xkbcommon/xkbcommon-keysyms.h>

#include <algorithm>
#include <cstring>
#include <string_view>

#include "platform/x11/xcb_reply.h"
#include "platform/x11/xcb_xkb.h"

namespace {

constexpr std::string_view kName = "_VANTLE_BORROWED_KEYS";
constexpr std::uint32_t kUnicodeSymbol = 0x01000000;
/// The type with levels plain and Shift that every map has at this place.
constexpr std::uint8_t kTwoLevelType = 1;
/// Longest record of old symbols that is read back, in units of four bytes: 255 keys with 32 symbols each.
constexpr std::uint32_t kLongestRecord = 255 * 34;

bool isVendorSymbol(std::uint32_t symbol) { return symbol == XKB_KEY_NoSymbol || symbol >= 0x1008fe00; }

/// Media and other special keys, which few keyboards have; those that switch consoles or end grabs are not among them.
bool isRare(const KeySymbols& key) { return key.groups() <= 1 && std::ranges::all_of(key.symbols, isVendorSymbol); }

/// A symbol for any character; Latin-1 has its own.
std::uint32_t symbolOf(char32_t character) {
  return character < 0x100 ? character : kUnicodeSymbol | static_cast<std::uint32_t>(character);
}

void append(std::vector<std::uint8_t>& out, const void* data, std::size_t size) {
  const auto* bytes = static_cast<const std::uint8_t*>(data);
  out.insert(out.end(), bytes, bytes + size);
}

/// Keys as the server sends and takes them.
std::vector<std::uint8_t> packed(std::span<const KeySymbols> keys) {
  std::vector<std::uint8_t> out;
  for (const KeySymbols& key : keys) {
    xcb_xkb_key_sym_map_t header{};
    std::ranges::copy(key.types, header.kt_index);
    header.groupInfo = key.groupInfo;
    header.width = key.width;
    header.nSyms = static_cast<std::uint16_t>(key.symbols.size());
    append(out, &header, sizeof header);
    append(out, key.symbols.data(), key.symbols.size() * sizeof(std::uint32_t));
  }
  return out;
}

/// The opposite; empty when the bytes are not what `packed` makes.
std::vector<KeySymbols> unpacked(std::span<const std::uint8_t> bytes) {
  std::vector<KeySymbols> keys;
  while (bytes.size() >= sizeof(xcb_xkb_key_sym_map_t)) {
    xcb_xkb_key_sym_map_t header;
    std::memcpy(&header, bytes.data(), sizeof header);
    bytes = bytes.subspan(sizeof header);
    const std::size_t size = header.nSyms * sizeof(std::uint32_t);
    if (bytes.size() < size) return {};
    KeySymbols& key = keys.emplace_back();
    std::ranges::copy(header.kt_index, key.types.begin());
    key.groupInfo = header.groupInfo;
    key.width = header.width;
    key.symbols.resize(header.nSyms);
    std::memcpy(key.symbols.data(), bytes.data(), size);
    bytes = bytes.subspan(size);
  }
  return keys;
}

}  // namespace

BorrowedKeys::BorrowedKeys(xcb_connection_t* connection, xcb_window_t root) : connection_(connection), root_(root) {
  const auto cookie = xcb_intern_atom(connection_, false, kName.size(), kName.data());
  const XcbReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection_, cookie, nullptr));
  if (reply) name_ = reply->atom;
  owner_ = xcb_generate_id(connection_);
  xcb_create_window(connection_, 0, owner_, root_, -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT,
                    0, nullptr);
}

BorrowedKeys::~BorrowedKeys() {
  giveBack();
  xcb_destroy_window(connection_, owner_);
  xcb_flush(connection_);
}

void BorrowedKeys::recover() {
  const auto cookie = xcb_get_property(connection_, false, root_, name_, XCB_ATOM_INTEGER, 0, kLongestRecord);
  const auto ownerCookie = xcb_get_selection_owner(connection_, name_);
  const XcbReply<xcb_get_property_reply_t> record(xcb_get_property_reply(connection_, cookie, nullptr));
  const XcbReply<xcb_get_selection_owner_reply_t> owner(
      xcb_get_selection_owner_reply(connection_, ownerCookie, nullptr));
  if (!record || !owner || owner->owner != XCB_NONE || record->format != 8) return;
  const std::span bytes(static_cast<const std::uint8_t*>(xcb_get_property_value(record.get())),
                        static_cast<std::size_t>(xcb_get_property_value_length(record.get())));
  if (bytes.empty()) return;
  const auto keys = unpacked(bytes.subspan(1));
  if (!keys.empty() && bytes[0] >= 8 && bytes[0] + keys.size() <= 256 && isStillOurs(bytes[0], keys)) {
    original_ = KeyboardMap::read(connection_, {});
    write(bytes[0], keys);
  }
  forget();
}

void BorrowedKeys::choose(const KeyboardMap& map) {
  if (isLending_) return;
  original_ = map;
  std::vector<xcb_keycode_t> codes = withoutGrabbed(candidates(map));
  neutralKey_ = 0;
  if (!codes.empty() && map.symbols(codes.front()).isEmpty()) {
    neutralKey_ = codes.front();
    codes.erase(codes.begin());
  }
  chooseLevels(map);
  const auto half = codes.begin() + static_cast<std::ptrdiff_t>((codes.size() + 1) / 2);
  banks_[0] = {{codes.begin(), half}, {}};
  banks_[1] = {{half, codes.end()}, {}};
  if (codes.empty()) return;
  const auto [first, last] = std::ranges::minmax(codes);
  first_ = first;
  last_ = last;
}

std::vector<xcb_keycode_t> BorrowedKeys::candidates(const KeyboardMap& map) const {
  std::vector<xcb_keycode_t> empty;
  std::vector<xcb_keycode_t> rare;
  for (int code = map.maximumCode(); code >= std::max<int>(BorrowedKeys::kFirstCode, map.minimumCode()); --code) {
    const auto key = static_cast<xcb_keycode_t>(code);
    if (map.modifiersOf(key) != 0 || map.isActing(key)) continue;
    if (map.symbols(key).isEmpty())
      empty.push_back(key);
    else if (isRare(map.symbols(key)))
      rare.push_back(key);
  }
  empty.insert(empty.end(), rare.begin(), rare.end());
  return empty;
}

std::vector<xcb_keycode_t> BorrowedKeys::withoutGrabbed(std::vector<xcb_keycode_t> codes) const {
  std::vector<xcb_void_cookie_t> cookies;
  for (const xcb_keycode_t code : codes) {
    cookies.push_back(xcb_grab_key_checked(connection_, true, root_, XCB_MOD_MASK_ANY, code, XCB_GRAB_MODE_ASYNC,
                                           XCB_GRAB_MODE_ASYNC));
    xcb_ungrab_key(connection_, code, root_, XCB_MOD_MASK_ANY);
  }
  std::erase_if(codes, [&, index = std::size_t{0}](xcb_keycode_t) mutable {
    return XcbReply<xcb_generic_error_t>(xcb_request_check(connection_, cookies[index++])) != nullptr;
  });
  return codes;
}

void BorrowedKeys::chooseLevels(const KeyboardMap& map) {
  const std::uint8_t shift = XCB_MOD_MASK_SHIFT;
  const std::uint8_t level3 = map.level3Modifier();
  levels_ = {{0, 0}};
  type_ = kTwoLevelType;
  if (map.shiftKey() != 0) levels_.push_back({1, shift});
  if (const auto four = map.fourLevelType()) {
    type_ = *four;
    levels_.push_back({2, level3});
    levels_.push_back({3, static_cast<std::uint8_t>(shift | level3)});
  }
}

bool BorrowedKeys::fill(std::size_t index, std::span<const char32_t> characters) {
  Bank& bank = banks_[index];
  if (characters.empty() || characters.size() > capacity(index)) return false;
  if (!isLending_) remember(*original_);
  const std::size_t used = std::min(bank.codes.size(), characters.size());
  for (std::size_t at = 0; at < used; ++at)
    current_[bank.codes[at]] = {{type_, type_, type_, type_}, 1, 4, std::vector<std::uint32_t>(4, XKB_KEY_NoSymbol)};
  if (type_ == kTwoLevelType)
    for (std::size_t at = 0; at < used; ++at) current_[bank.codes[at]] = {{1, 1, 1, 1}, 1, 2, {0, 0}};
  bank.held.clear();
  for (std::size_t at = 0; at < characters.size(); ++at) {
    const xcb_keycode_t code = bank.codes[at % bank.codes.size()];
    const Level& level = levels_[at / bank.codes.size()];
    current_[code].symbols[level.level] = symbolOf(characters[at]);
    bank.held.emplace(characters[at], KeyStroke{code, level.modifiers});
  }
  const bool written = writeCurrent(std::span(bank.codes).first(used));
  if (!written) bank.held.clear();
  return written;
}

void BorrowedKeys::touch(std::size_t bank) {
  if (isLending_) writeCurrent(banks_[bank].codes);
}

bool BorrowedKeys::writeCurrent(std::span<const xcb_keycode_t> codes) {
  const auto [first, last] = std::ranges::minmax(codes);
  return write(first, currentBetween(first, last));
}

std::span<const KeySymbols> BorrowedKeys::currentBetween(std::size_t first, std::size_t last) const {
  return std::span(current_).subspan(first, last - first + 1);
}

std::optional<KeyStroke> BorrowedKeys::find(char32_t character, std::size_t bank) const {
  const auto found = banks_[bank].held.find(character);
  return found == banks_[bank].held.end() ? std::nullopt : std::optional(found->second);
}

void BorrowedKeys::remember(const KeyboardMap& map) {
  for (std::size_t code = 0; code < current_.size(); ++code)
    current_[code] = map.symbols(static_cast<xcb_keycode_t>(code));
  std::vector<std::uint8_t> record{first_};
  const auto keys = currentBetween(first_, last_);
  const auto bytes = packed(keys);
  record.insert(record.end(), bytes.begin(), bytes.end());
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, root_, name_, XCB_ATOM_INTEGER, 8,
                      static_cast<std::uint32_t>(record.size()), record.data());
  xcb_set_selection_owner(connection_, owner_, name_, XCB_CURRENT_TIME);
  for (const Bank& bank : banks_)
    for (const xcb_keycode_t code : bank.codes) lent_.set(code);
  isLending_ = true;
}

bool BorrowedKeys::write(xcb_keycode_t first, std::span<const KeySymbols> keys) {
  if (!original_) return false;
  const auto values = packed(keys);
  std::size_t symbols = 0;
  for (const KeySymbols& key : keys) symbols += key.symbols.size();
  const auto cookie = xcb_xkb_set_map_checked(
      connection_, XCB_XKB_ID_USE_CORE_KBD, XCB_XKB_MAP_PART_KEY_SYMS, 0, original_->minimumCode(),
      original_->maximumCode(), 0, 0, first, static_cast<std::uint8_t>(keys.size()),
      static_cast<std::uint16_t>(symbols), 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, values.data());
  return XcbReply<xcb_generic_error_t>(xcb_request_check(connection_, cookie)) == nullptr;
}

bool BorrowedKeys::isStillOurs(xcb_keycode_t first, std::span<const KeySymbols> old) const {
  const auto now = KeyboardMap::read(connection_, {});
  if (!now) return false;
  for (std::size_t index = 0; index < old.size(); ++index) {
    const KeySymbols& key = now->symbols(static_cast<xcb_keycode_t>(first + index));
    if (key != old[index] && (!isRare(old[index]) || isRare(key))) return false;
  }
  return true;
}

void BorrowedKeys::giveBack() {
  if (!isLending_) return;
  std::vector<KeySymbols> old;
  for (int code = first_; code <= last_; ++code) old.push_back(original_->symbols(static_cast<xcb_keycode_t>(code)));
  // A layout that was chosen meanwhile has replaced the whole map; then nothing of ours is left in it.
  if (isStillOurs(first_, old)) write(first_, old);
  forget();
  lent_.reset();
  isLending_ = false;
}

void BorrowedKeys::forget() {
  xcb_set_selection_owner(connection_, XCB_NONE, name_, XCB_CURRENT_TIME);
  // The answer is waited for: a connection closed right after a request may take the request with it.
  const auto cookie = xcb_delete_property_checked(connection_, root_, name_);
  XcbReply<xcb_generic_error_t>(xcb_request_check(connection_, cookie));
}
