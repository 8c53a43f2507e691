#include "platform/hotkey_backend.h"

QString HotkeyRefusal::description() const {
  switch (reason) {
    case Reason::taken:
      return QStringLiteral("taken by another program");
    case Reason::noSuchKey:
      return QStringLiteral("the keyboard has no such key");
    case Reason::unavailable:
      break;
  }
  return QStringLiteral("global shortcuts are not available here");
}
