#include "platform/x11/xtest_keyboard.h"

#include <xcb/xinput.h>
#include <xcb/xtest.h>

#include <algorithm>
#include <chrono>
#include <string_view>
#include <utility>

#include "platform/x11/pacing.h"
#include "platform/x11/xcb_reply.h"
#include "platform/x11/xcb_xkb.h"

using namespace std::chrono_literals;

namespace {

/// Grabs that stop the keyboard, for a shortcut's sake, last a few milliseconds.
constexpr auto kLongestStop = 500ms;
constexpr auto kPoll = 1ms;
/// Those of shortcuts end with the hand on the key, those of menus and locked screens much later.
constexpr auto kLongestGrab = 600ms;
constexpr auto kGrabPoll = 10ms;

bool hasExtension(xcb_connection_t* connection, xcb_extension_t* extension) {
  const auto* data = xcb_get_extension_data(connection, extension);
  return data != nullptr && data->present;
}

const xcb_screen_t* screenAt(xcb_connection_t* connection, int number) {
  auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
  while (number-- > 0 && screens.rem > 1) xcb_screen_next(&screens);
  return screens.rem > 0 ? screens.data : nullptr;
}

}  // namespace

std::unique_ptr<XTestKeyboard> XTestKeyboard::open() {
  std::unique_ptr<XTestKeyboard> keyboard(new XTestKeyboard);
  int screen = 0;
  keyboard->connection_.reset(xcb_connect(nullptr, &screen));
  if (keyboard->isBroken() || !keyboard->prepare(screen)) return nullptr;
  return keyboard;
}

bool XTestKeyboard::prepare(int screen) {
  xcb_connection_t* c = connection_.get();
  const xcb_screen_t* found = screenAt(c, screen);
  if (found == nullptr || !hasExtension(c, &xcb_test_id) || !hasExtension(c, &xcb_xkb_id)) return false;
  root_ = found->root;
  const auto useXkb = xcb_xkb_use_extension(c, XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION);
  const XcbReply<xcb_xkb_use_extension_reply_t> xkb(xcb_xkb_use_extension_reply(c, useXkb, nullptr));
  return xkb && xkb->supported && prepareInput();
}

bool XTestKeyboard::prepareInput() {
  xcb_connection_t* c = connection_.get();
  if (!hasExtension(c, &xcb_input_id)) return false;
  inputOpcode_ = xcb_get_extension_data(c, &xcb_input_id)->major_opcode;
  // From 2.1 on raw events arrive also while another program has grabbed the keyboard.
  const auto version = xcb_input_xi_query_version(c, 2, 2);
  const XcbReply<xcb_input_xi_query_version_reply_t> answer(xcb_input_xi_query_version_reply(c, version, nullptr));
  if (!answer) return false;
  findXTestDevice();
  return !isBroken();
}

bool XTestKeyboard::awaitUngrabbed(const std::stop_token& stop) {
  const auto end = std::chrono::steady_clock::now() + kLongestGrab;
  while (isGrabbed()) {
    if (std::chrono::steady_clock::now() >= end || stop.stop_requested() || isBroken()) return false;
    pacing::sleep(kGrabPoll);
  }
  return true;
}

/// Nothing tells who has the keyboard; but whoever asks for it is refused while somebody has it.
bool XTestKeyboard::isGrabbed() {
  xcb_connection_t* c = connection_.get();
  const auto cookie = xcb_grab_keyboard(c, true, root_, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
  const XcbReply<xcb_grab_keyboard_reply_t> reply(xcb_grab_keyboard_reply(c, cookie, nullptr));
  if (!reply) return false;
  if (reply->status == XCB_GRAB_STATUS_SUCCESS) {
    xcb_ungrab_keyboard(c, XCB_CURRENT_TIME);
    sync();
  }
  return reply->status == XCB_GRAB_STATUS_ALREADY_GRABBED || reply->status == XCB_GRAB_STATUS_FROZEN;
}

void XTestKeyboard::watchKeys(bool wanted) {
  constexpr std::uint32_t keys = XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE;
  const struct {
    xcb_input_event_mask_t head{XCB_INPUT_DEVICE_ALL_MASTER, 1};
    std::uint32_t events;
  } mask{.events = wanted ? keys : 0};
  xcb_input_xi_select_events(connection_.get(), root_, 1, &mask.head);
  sync();
  takeForeignKeys();
  own_.clear();
}

void XTestKeyboard::findXTestDevice() {
  xcb_connection_t* c = connection_.get();
  const auto cookie = xcb_input_xi_query_device(c, XCB_INPUT_DEVICE_ALL);
  const XcbReply<xcb_input_xi_query_device_reply_t> reply(xcb_input_xi_query_device_reply(c, cookie, nullptr));
  if (!reply) return;
  for (auto it = xcb_input_xi_query_device_infos_iterator(reply.get()); it.rem > 0;
       xcb_input_xi_device_info_next(&it)) {
    const std::string_view name(xcb_input_xi_device_info_name(it.data),
                                static_cast<std::size_t>(xcb_input_xi_device_info_name_length(it.data)));
    if (name.ends_with("XTEST keyboard")) xtestDevice_ = it.data->deviceid;
  }
}

void XTestKeyboard::fake(xcb_keycode_t code, bool pressed) {
  if (code == 0) return;
  xcb_test_fake_input(connection_.get(), pressed ? XCB_KEY_PRESS : XCB_KEY_RELEASE, code, XCB_CURRENT_TIME, root_, 0, 0,
                      0);
  own_.push_back({code, pressed});
}

void XTestKeyboard::sync() { awaitServer(connection_.get()); }

void XTestKeyboard::settle(xcb_keycode_t neutralKey) {
  tap(neutralKey);
  sync();
  collect();
  if (neutralKey == 0) return;
  const auto end = std::chrono::steady_clock::now() + kLongestStop;
  while (!own_.empty() && !isBroken() && std::chrono::steady_clock::now() < end) {
    pacing::sleep(kPoll);
    collect();
  }
}

std::vector<KeyChange> XTestKeyboard::takeForeignKeys() {
  collect();
  return std::exchange(foreign_, {});
}

void XTestKeyboard::collect() {
  while (const XcbReply<xcb_generic_event_t> event{xcb_poll_for_event(connection_.get())}) {
    if ((event->response_type & 0x7f) != XCB_GE_GENERIC) continue;
    const auto* raw = reinterpret_cast<const xcb_input_raw_key_press_event_t*>(event.get());
    if (raw->extension != inputOpcode_) continue;
    const KeyChange key{static_cast<xcb_keycode_t>(raw->detail), raw->event_type == XCB_INPUT_RAW_KEY_PRESS};
    if (!isOwn(raw->sourceid, key)) foreign_.push_back(key);
  }
}

bool XTestKeyboard::isOwn(std::uint16_t source, const KeyChange& key) {
  if (xtestDevice_ != 0 && source != xtestDevice_) return false;
  const auto found = std::ranges::find(own_, key);
  if (found == own_.end()) return false;
  // Those before it were dropped by the server: a press of a key that was down already, say.
  own_.erase(own_.begin(), std::next(found));
  return true;
}

std::uint8_t XTestKeyboard::heldModifiers() {
  const auto cookie = xcb_xkb_get_state(connection_.get(), XCB_XKB_ID_USE_CORE_KBD);
  const XcbReply<xcb_xkb_get_state_reply_t> reply(xcb_xkb_get_state_reply(connection_.get(), cookie, nullptr));
  return reply ? reply->baseMods : std::uint8_t{0};
}

std::uint8_t XTestKeyboard::lockedModifiers() {
  const auto cookie = xcb_xkb_get_state(connection_.get(), XCB_XKB_ID_USE_CORE_KBD);
  const XcbReply<xcb_xkb_get_state_reply_t> reply(xcb_xkb_get_state_reply(connection_.get(), cookie, nullptr));
  return reply ? reply->lockedMods : std::uint8_t{0};
}

void XTestKeyboard::setLocked(std::uint8_t affected, std::uint8_t locked) {
  xcb_xkb_latch_lock_state(connection_.get(), XCB_XKB_ID_USE_CORE_KBD, affected, locked, 0, 0, 0xff, 0, 0);
}

std::array<bool, 256> XTestKeyboard::keysDown() {
  std::array<bool, 256> down{};
  const auto cookie = xcb_query_keymap(connection_.get());
  const XcbReply<xcb_query_keymap_reply_t> reply(xcb_query_keymap_reply(connection_.get(), cookie, nullptr));
  for (std::size_t code = 0; reply && code < down.size(); ++code)
    down[code] = (reply->keys[code / 8] >> (code % 8) & 1) != 0;
  return down;
}
