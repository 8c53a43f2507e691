#include "platform/x11/x11_session.h"

#include <QGuiApplication>

#include "platform/x11/xcb_reply.h"

namespace {

/// In 32-bit units: no property read here is near it.
constexpr std::uint32_t kLongestProperty = 16384;

}  // namespace

bool isWaylandSession() {
  return qgetenv("XDG_SESSION_TYPE") == "wayland" || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

X11Session currentX11Session() {
  if (qGuiApp == nullptr) return {};
  const auto* application = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  if (application == nullptr || application->connection() == nullptr) return {};
  xcb_connection_t* connection = application->connection();
  return {connection, xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root};
}

xcb_atom_t internAtom(const X11Session& session, QByteArrayView name) {
  const auto cookie = xcb_intern_atom(session.connection, false, static_cast<std::uint16_t>(name.size()), name.data());
  const XcbReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(session.connection, cookie, nullptr));
  return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

QByteArray windowProperty(const X11Session& session, xcb_window_t window, xcb_atom_t property) {
  const auto cookie =
      xcb_get_property(session.connection, false, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, kLongestProperty);
  const XcbReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(session.connection, cookie, nullptr));
  if (!reply) return {};
  return {static_cast<const char*>(xcb_get_property_value(reply.get())), xcb_get_property_value_length(reply.get())};
}

xcb_window_t selectionOwner(const X11Session& session, xcb_atom_t selection) {
  const auto cookie = xcb_get_selection_owner(session.connection, selection);
  const XcbReply<xcb_get_selection_owner_reply_t> reply(
      xcb_get_selection_owner_reply(session.connection, cookie, nullptr));
  return reply ? reply->owner : static_cast<xcb_window_t>(XCB_WINDOW_NONE);
}
