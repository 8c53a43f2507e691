#pragma once

#include <optional>

#include "platform/x11/x11_session.h"

/// Whether two windows belong to one program: made over one connection, or by one process of this computer.
bool isSameClient(const X11Session& session, xcb_window_t one, xcb_window_t other);
/// The process that made the window, as the server knows it: nothing for one of another computer, and without the X
/// resource extension.
std::optional<int> processOf(const X11Session& session, xcb_window_t window);
