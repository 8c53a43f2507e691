#include "platform/x11/x11_hotkeys.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>

#include "base/logging.h"
#include "platform/carbon_modifiers.h"
#include "platform/x11/x11_raw_input.h"
#include "platform/x11/xcb_reply.h"

namespace {

constexpr std::uint16_t kModifiers = XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | XCB_MOD_MASK_4;
/// Caps Lock and Num Lock: a grab matches the whole modifier state, so each combination is taken with each of them.
constexpr std::array<std::uint16_t, 4> kLocks = {0, XCB_MOD_MASK_LOCK, XCB_MOD_MASK_2,
                                                 XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2};
constexpr std::uint8_t kBadAccess = 10;

struct ModifierPair {
  std::uint32_t carbon;
  std::uint16_t x11;
};
constexpr std::array kModifierTable = {
    ModifierPair{carbon::kControl, XCB_MOD_MASK_CONTROL},
    ModifierPair{carbon::kOption, XCB_MOD_MASK_1},
    ModifierPair{carbon::kShift, XCB_MOD_MASK_SHIFT},
    ModifierPair{carbon::kCommand, XCB_MOD_MASK_4},
};

std::uint16_t x11Modifiers(std::uint32_t carbonModifiers) {
  std::uint16_t mask = 0;
  for (const auto& pair : kModifierTable)
    if ((carbonModifiers & pair.carbon) != 0) mask |= pair.x11;
  return mask;
}

bool isDown(xcb_connection_t* connection, xcb_keycode_t code) {
  const XcbReply<xcb_query_keymap_reply_t> reply(
      xcb_query_keymap_reply(connection, xcb_query_keymap(connection), nullptr));
  return reply && (reply->keys[code / 8] & (1 << (code % 8))) != 0;
}

}  // namespace

X11Hotkeys::X11Hotkeys(const X11Session& session, std::shared_ptr<X11RawInput> rawInput)
    : session_(session), rawInput_(std::move(rawInput)) {}

X11Hotkeys::~X11Hotkeys() {
  // Without the application the connection is closed, and every grab gone with it.
  if (QCoreApplication::instance() == nullptr) return;
  for (const Grab& grab : grabs_) give(grab);
}

void X11Hotkeys::install(Pressed pressed) {
  pressed_ = std::move(pressed);
  QCoreApplication::instance()->installNativeEventFilter(this);
}

std::expected<void, HotkeyRefusal> X11Hotkeys::registerHotkey(std::uint32_t id, std::uint32_t keyCode,
                                                              std::uint32_t carbonModifiers) {
  const auto code = keyMap().keyCode(keyCode);
  if (!code) return std::unexpected(HotkeyRefusal{HotkeyRefusal::Reason::noSuchKey});
  const Grab grab{id, keyCode, x11Modifiers(carbonModifiers), *code};
  if (const auto taken = take(grab); !taken) return taken;
  grabs_.push_back(grab);
  return {};
}

void X11Hotkeys::unregisterHotkey(std::uint32_t id) {
  const auto found = std::ranges::find(grabs_, id, &Grab::id);
  if (found == grabs_.end()) return;
  give(*found);
  grabs_.erase(found);
}

const X11KeyMap& X11Hotkeys::keyMap() {
  if (!keyMap_) keyMap_ = X11KeyMap::current(session_);
  return *keyMap_;
}

std::expected<void, HotkeyRefusal> X11Hotkeys::take(const Grab& grab) {
  // The server would let one client take a combination twice.
  const bool isOwn = std::ranges::any_of(grabs_, [&grab](const Grab& other) {
    return other.id != grab.id && other.active && other.code == grab.code && other.modifiers == grab.modifiers;
  });
  if (isOwn) return std::unexpected(HotkeyRefusal{HotkeyRefusal::Reason::taken});

  std::array<xcb_void_cookie_t, kLocks.size()> cookies;
  std::ranges::transform(kLocks, cookies.begin(), [&](std::uint16_t lock) {
    return xcb_grab_key_checked(session_.connection, false, session_.root, grab.modifiers | lock, grab.code,
                                XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_SYNC);
  });
  std::uint8_t refusal = 0;
  for (const auto cookie : cookies)
    if (const XcbReply<xcb_generic_error_t> error(xcb_request_check(session_.connection, cookie)); error)
      refusal = error->error_code;
  if (refusal == 0) return {};
  give(grab);
  return std::unexpected(
      HotkeyRefusal{refusal == kBadAccess ? HotkeyRefusal::Reason::taken : HotkeyRefusal::Reason::unavailable});
}

/// Another program that asks right after this gets the combination.
void X11Hotkeys::give(const Grab& grab) {
  for (const auto lock : kLocks) xcb_ungrab_key(session_.connection, grab.code, session_.root, grab.modifiers | lock);
  awaitServer(session_.connection);
}

bool X11Hotkeys::nativeEventFilter(const QByteArray&, void* message, qintptr*) {
  const auto& event = *static_cast<const xcb_generic_event_t*>(message);
  if (event.response_type == XCB_KEY_PRESS) return handlePress(reinterpret_cast<const xcb_key_press_event_t&>(event));
  if (event.response_type == XCB_KEY_RELEASE) seeRelease(reinterpret_cast<const xcb_key_release_event_t&>(event));
  if (const auto raw = rawInput_->read(event); raw && raw->type == XCB_INPUT_RAW_KEY_RELEASE && raw->detail == held_) {
    held_ = 0;
    awaitRawRelease(false);
  }
  if (isKeyMapChange(session_, event)) queueKeyMapReading();
  return false;
}

/// Presses arrive on the root window, or on the panel that has the whole keyboard: an active grab keeps the passive
/// ones from matching, and shortcuts work over an open panel too.
bool X11Hotkeys::handlePress(const xcb_key_press_event_t& press) {
  const bool isRepetition = press.detail == held_ && (!release_ || release_ == Release{press.time, press.state});
  const auto found = std::ranges::find_if(grabs_, [&press](const Grab& grab) {
    return grab.active && grab.code == press.detail && grab.modifiers == (press.state & kModifiers);
  });
  if (isRepetition || found == grabs_.end()) {
    // What reaches the root window came through a grab, perhaps one that was given back meanwhile.
    if (press.event == session_.root) thaw();
    if (isRepetition)
      release_.reset();
    else if (release_)
      forgetHeld();
    return isRepetition;
  }
  const auto deliver = [this, id = found->id] {
    pressed_(id);
    thaw();
  };
  QMetaObject::invokeMethod(&context_, deliver, Qt::QueuedConnection);
  hold(press.detail);
  return true;
}

/// What is typed after a shortcut waits in the server until the shortcut's panel has taken the keyboard, however late
/// this process gets its turn: nothing of it goes to the window behind.
void X11Hotkeys::thaw() {
  xcb_allow_events(session_.connection, XCB_ALLOW_ASYNC_KEYBOARD, XCB_CURRENT_TIME);
  xcb_flush(session_.connection);
}

/// The release goes to whoever has the keyboard by then. Under a grab of ours it arrives as an ordinary event,
/// otherwise as a raw one.
void X11Hotkeys::hold(xcb_keycode_t code) {
  held_ = code;
  release_.reset();
  awaitRawRelease(true);
}

/// It was released and something else has been pressed since: its next press is one, however soon it comes.
void X11Hotkeys::forgetHeld() {
  if (std::exchange(held_, 0) != 0) awaitRawRelease(false);
}

/// A repetition comes as a release and a press of one and the same time, so a release alone says nothing yet.
void X11Hotkeys::seeRelease(const xcb_key_release_event_t& release) {
  if (release.detail != held_) return;
  release_ = Release{release.time, release.state};
  if (!isDown(session_.connection, held_)) awaitRawRelease(false);
}

void X11Hotkeys::awaitRawRelease(bool wanted) { rawInput_->select(XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE, wanted); }

/// One change comes as several events; the map is read once they are all in.
void X11Hotkeys::queueKeyMapReading() {
  if (!keyMap_ || std::exchange(keyMapReadingQueued_, true)) return;
  QMetaObject::invokeMethod(&context_, [this] { followKeyMap(); }, Qt::QueuedConnection);
}

/// Most changes concern keys that carry no shortcut (typing borrows some), so only what really moved is touched.
void X11Hotkeys::followKeyMap() {
  keyMapReadingQueued_ = false;
  keyMap_ = X11KeyMap::current(session_);
  std::vector<Grab*> moved;
  for (Grab& grab : grabs_) {
    const auto code = keyMap_->keyCode(grab.mac).value_or(grab.code);
    if (code == grab.code && grab.active) continue;
    if (grab.active) give(grab);
    grab.active = false;
    grab.code = code;
    moved.push_back(&grab);
  }
  for (Grab* grab : moved) {
    grab->active = take(*grab).has_value();
    if (!grab->active) qCDebug(lcHotkeys) << "taken on this layout: key" << grab->mac;
  }
}
