#include "platform/x11/window_manager.h"

QByteArray windowManagerName(const X11Session& session) {
  const auto check = windowProperty(session, session.root, internAtom(session, "_NET_SUPPORTING_WM_CHECK"));
  if (check.size() != sizeof(xcb_window_t)) return {};
  const auto window = *reinterpret_cast<const xcb_window_t*>(check.constData());
  return windowProperty(session, window, internAtom(session, "_NET_WM_NAME"));
}
