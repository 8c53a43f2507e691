#include "platform/x11/x11_key_legends.h"

#include <QCoreApplication>

#include "platform/key_codes.h"

namespace {

/// The key left of Z that ANSI keyboards lack: its macOS key code and its place on X servers.
constexpr std::uint32_t kIsoKey = 10;
constexpr xcb_keycode_t kIsoPosition = 94;

}  // namespace

QString X11KeyLegends::legend(std::uint32_t position) const {
  if (position == kIsoKey) return keyMap().legend(kIsoPosition);
  const KeyCode* key = findKeyCode(position);
  return key ? keyMap().legend(static_cast<xcb_keycode_t>(key->position)) : QString();
}

std::uint32_t X11KeyLegends::position(std::uint32_t keyCode) const {
  const auto code = keyMap().keyCode(keyCode);
  if (!code) return keyCode;
  if (*code == kIsoPosition) return kIsoKey;
  const KeyCode* key = findKeyByPosition(*code);
  return key ? key->mac : keyCode;
}

void X11KeyLegends::watch(std::function<void()> changed) {
  const bool isWatching = changed != nullptr;
  changed_ = std::move(changed);
  keyMap_.reset();
  if (isWatching)
    QCoreApplication::instance()->installNativeEventFilter(this);
  else if (QCoreApplication::instance())
    QCoreApplication::instance()->removeNativeEventFilter(this);
}

/// One change comes as several events; the last of them reads the map that holds.
bool X11KeyLegends::nativeEventFilter(const QByteArray&, void* message, qintptr*) {
  if (!isKeyMapChange(session_, *static_cast<const xcb_generic_event_t*>(message)) || !keyMap_) return false;
  keyMap_.reset();
  QMetaObject::invokeMethod(
      &context_,
      [this] {
        if (changed_) changed_();
      },
      Qt::QueuedConnection);
  return false;
}

const X11KeyMap& X11KeyLegends::keyMap() const {
  if (!keyMap_) keyMap_ = X11KeyMap::current(session_);
  return *keyMap_;
}
