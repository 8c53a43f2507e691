#pragma once

#include <xcb/xcb.h>

#include <QByteArray>

/// Qt's own connection to the X server, shared by the X11 backends so that requests of all of them stay in order.
struct X11Session {
  xcb_connection_t* connection = nullptr;
  xcb_window_t root = XCB_WINDOW_NONE;
};

/// Whether the user's session is a Wayland one, so that the X server is XWayland.
bool isWaylandSession();

/// The session of the running QGuiApplication; without a connection unless it runs on X11.
X11Session currentX11Session();

xcb_atom_t internAtom(const X11Session& session, QByteArrayView name);
/// The value of a window's property; empty when there is none. One round trip.
QByteArray windowProperty(const X11Session& session, xcb_window_t window, xcb_atom_t property);
/// The window that owns a selection, or XCB_WINDOW_NONE.
xcb_window_t selectionOwner(const X11Session& session, xcb_atom_t selection);
