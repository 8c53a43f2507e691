#include "platform/x11/x11_key_map.h"

#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon-x11.h>

#include <algorithm>
#include <array>

#include "platform/key_codes.h"
#include "platform/x11/x11_session.h"
#include "platform/x11/xcb_reply.h"
#include "platform/x11/xcb_xkb.h"

namespace {

struct UnrefContext {
  void operator()(xkb_context* context) const { xkb_context_unref(context); }
};
using Context = std::unique_ptr<xkb_context, UnrefContext>;

X11KeyMap::Map readMap(const X11Session& session) {
  const auto device = xkb_x11_get_core_keyboard_device_id(session.connection);
  if (device < 0) return nullptr;
  const Context context(xkb_context_new(static_cast<xkb_context_flags>(XKB_CONTEXT_NO_DEFAULT_INCLUDES)));
  return X11KeyMap::Map(
      xkb_x11_keymap_new_from_device(context.get(), session.connection, device, XKB_KEYMAP_COMPILE_NO_FLAGS));
}

xkb_layout_index_t readLayout(const X11Session& session) {
  const auto cookie = xcb_xkb_get_state(session.connection, XCB_XKB_ID_USE_CORE_KBD);
  const XcbReply<xcb_xkb_get_state_reply_t> reply(xcb_xkb_get_state_reply(session.connection, cookie, nullptr));
  return reply ? reply->group : 0;
}

const xcb_query_extension_reply_t* keyboardExtension(const X11Session& session) {
  const auto* extension = xcb_get_extension_data(session.connection, &xcb_xkb_id);
  return extension != nullptr && extension->present ? extension : nullptr;
}

/// Whether a key gives `symbol` without modifiers. Keys with fewer layouts than the keyboard wrap around.
bool carries(xkb_keymap* map, xkb_keycode_t key, xkb_layout_index_t layout, xkb_keysym_t symbol) {
  const auto layouts = xkb_keymap_num_layouts_for_key(map, key);
  if (layouts == 0) return false;
  const xkb_keysym_t* symbols = nullptr;
  return xkb_keymap_key_get_syms_by_level(map, key, layout % layouts, 0, &symbols) == 1 && *symbols == symbol;
}

std::optional<xcb_keycode_t> find(xkb_keymap* map, xkb_layout_index_t layout, const KeyCode& key) {
  // Some symbols are on several keys; the one in its usual place is the one that is meant.
  if (carries(map, key.position, layout, key.keysym)) return static_cast<xcb_keycode_t>(key.position);
  const auto last = std::min<xkb_keycode_t>(xkb_keymap_max_keycode(map), 255);
  for (auto code = xkb_keymap_min_keycode(map); code <= last; ++code)
    if (carries(map, code, layout, key.keysym)) return static_cast<xcb_keycode_t>(code);
  return {};
}

/// Dead keys type nothing by themselves; their sign is printed on them all the same.
struct DeadKey {
  xkb_keysym_t symbol;
  char16_t sign;
};
constexpr std::array kDeadKeys = {
    DeadKey{XKB_KEY_dead_grave, u'`'},      DeadKey{XKB_KEY_dead_acute, u'´'},
    DeadKey{XKB_KEY_dead_circumflex, u'^'}, DeadKey{XKB_KEY_dead_tilde, u'~'},
    DeadKey{XKB_KEY_dead_macron, u'¯'},     DeadKey{XKB_KEY_dead_breve, u'˘'},
    DeadKey{XKB_KEY_dead_abovedot, u'˙'},   DeadKey{XKB_KEY_dead_diaeresis, u'¨'},
    DeadKey{XKB_KEY_dead_abovering, u'°'},  DeadKey{XKB_KEY_dead_doubleacute, u'˝'},
    DeadKey{XKB_KEY_dead_caron, u'ˇ'},      DeadKey{XKB_KEY_dead_cedilla, u'¸'},
    DeadKey{XKB_KEY_dead_ogonek, u'˛'},
};

QString printed(xkb_keysym_t symbol) {
  const auto dead = std::ranges::find(kDeadKeys, symbol, &DeadKey::symbol);
  if (dead != kDeadKeys.end()) return QString(QChar(dead->sign));
  const auto character = static_cast<char32_t>(xkb_keysym_to_utf32(symbol));
  if (character <= U' ' || !QChar::isPrint(character)) return {};
  const QString text = QString::fromUcs4(&character, 1);
  // Some letters become two in upper case.
  const QString upper = text.toUpper();
  return upper.size() == text.size() ? upper : text;
}

QString printed(xkb_keymap* map, xkb_keycode_t key, xkb_layout_index_t layout, xkb_level_index_t level) {
  const auto layouts = xkb_keymap_num_layouts_for_key(map, key);
  const xkb_keysym_t* symbols = nullptr;
  if (layouts == 0 || xkb_keymap_key_get_syms_by_level(map, key, layout % layouts, level, &symbols) != 1) return {};
  return printed(*symbols);
}

bool isLatin(const QString& text) {
  return !text.isEmpty() && (!text[0].isLetter() || text[0].script() == QChar::Script_Latin);
}

}  // namespace

X11KeyMap X11KeyMap::current(const X11Session& session) {
  if (keyboardExtension(session) == nullptr) return {nullptr, 0};
  return {readMap(session), readLayout(session)};
}

std::optional<xcb_keycode_t> X11KeyMap::keyCode(std::uint32_t mac) const {
  const KeyCode* key = findKeyCode(mac);
  if (key == nullptr) return {};
  if (map_ == nullptr) return static_cast<xcb_keycode_t>(key->position);
  if (const auto code = find(map_.get(), layout_, *key)) return code;
  for (xkb_layout_index_t layout = 0; layout < xkb_keymap_num_layouts(map_.get()); ++layout)
    if (const auto code = find(map_.get(), layout, *key)) return code;
  return static_cast<xcb_keycode_t>(key->position);
}

QString X11KeyMap::legend(xcb_keycode_t code) const {
  if (map_ == nullptr) return {};
  QString shifted = printed(map_.get(), code, layout_, 1);
  if (!shifted.isEmpty() && shifted[0].isDigit()) return shifted;
  QString own = printed(map_.get(), code, layout_, 0);
  if (own.isEmpty() || isLatin(own)) return own;
  for (xkb_layout_index_t layout = 0; layout < xkb_keymap_num_layouts(map_.get()); ++layout)
    if (const QString other = printed(map_.get(), code, layout, 0); isLatin(other)) return other;
  return own;
}

bool isKeyMapChange(const X11Session& session, const xcb_generic_event_t& event) {
  if (event.response_type == XCB_MAPPING_NOTIFY)
    return reinterpret_cast<const xcb_mapping_notify_event_t&>(event).request == XCB_MAPPING_KEYBOARD;
  const auto* extension = keyboardExtension(session);
  if (extension == nullptr || event.response_type != extension->first_event) return false;
  const auto& state = reinterpret_cast<const xcb_xkb_state_notify_event_t&>(event);
  if (state.xkbType == XCB_XKB_STATE_NOTIFY) return (state.changed & XCB_XKB_STATE_PART_GROUP_STATE) != 0;
  return state.xkbType == XCB_XKB_NEW_KEYBOARD_NOTIFY || state.xkbType == XCB_XKB_MAP_NOTIFY;
}
