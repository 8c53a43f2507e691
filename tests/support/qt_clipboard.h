#pragma once

#include <QClipboard>
#include <QGuiApplication>
#include <QTest>

#include <functional>

#include "platform/x11/x11_session.h"

/// Copies in this program by Qt, as text fields do, until Qt has the clipboard: before it has heard of the last owner,
/// it asks with too old a time, and the server refuses.
inline void copyInQt(const std::function<void(QClipboard&)>& copy) {
  const X11Session session = currentX11Session();
  const auto isOwner = [&session] {
    const xcb_setup_t* own = xcb_get_setup(session.connection);
    const xcb_window_t owner = selectionOwner(session, internAtom(session, "CLIPBOARD"));
    return owner != XCB_WINDOW_NONE && (owner & ~own->resource_id_mask) == own->resource_id_base;
  };
  QTRY_VERIFY((copy(*QGuiApplication::clipboard()), isOwner()));
}
