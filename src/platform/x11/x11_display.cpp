#include <xcb/xcb.h>
#include <QByteArray>

#include "platform/display.h"

bool prepareDisplay() {
  // The X server also inside a Wayland session: only there can shortcuts be grabbed and keys be sent.
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "xcb");
  if (qgetenv("QT_QPA_PLATFORM") != "xcb") return true;
  xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
  const bool works = xcb_connection_has_error(connection) == 0;
  xcb_disconnect(connection);
  return works;
}
