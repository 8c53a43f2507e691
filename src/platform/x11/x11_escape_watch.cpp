#include "platform/x11/x11_escape_watch.h"

#include <QCoreApplication>

#include "platform/key_codes.h"
#include "platform/x11/x11_key_map.h"
#include "platform/x11/xcb_reply.h"

namespace {

constexpr std::uint16_t kModifiers = XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | XCB_MOD_MASK_4;

/// What raw events leave out. True when the server does not answer: a combination is not to pass for the key.
bool isModifierHeld(const X11Session& session) {
  const XcbReply<xcb_query_pointer_reply_t> pointer(
      xcb_query_pointer_reply(session.connection, xcb_query_pointer(session.connection, session.root), nullptr));
  return !pointer || (pointer->mask & kModifiers) != 0;
}

}  // namespace

X11EscapeWatch::X11EscapeWatch(const X11Session& session, std::shared_ptr<X11RawInput> rawInput,
                               std::function<bool()> isIgnored, std::function<void()> pressed)
    : session_(session),
      rawInput_(std::move(rawInput)),
      keyPresses_(rawInput_->selectKeyPresses()),
      isIgnored_(std::move(isIgnored)),
      pressed_(std::move(pressed)),
      escape_(X11KeyMap::current(session).keyCode(findKeyByQtKey(Qt::Key_Escape)->mac).value_or(0)) {
  QCoreApplication::instance()->installNativeEventFilter(this);
}

bool X11EscapeWatch::nativeEventFilter(const QByteArray&, void* message, qintptr*) {
  const auto raw = rawInput_->read(*static_cast<const xcb_generic_event_t*>(message));
  const bool isEscape = raw && raw->type == XCB_INPUT_RAW_KEY_PRESS && raw->detail == escape_;
  // Asked now: the panel that gets the key will be closed by it.
  if (!isEscape || isIgnored_() || isModifierHeld(session_)) return false;
  // Who hears of it may end the watch.
  QMetaObject::invokeMethod(&context_, [pressed = pressed_] { pressed(); }, Qt::QueuedConnection);
  return false;
}
