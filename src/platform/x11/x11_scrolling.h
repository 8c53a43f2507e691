#pragma once

#include "platform/panel_window.h"
#include "platform/x11/x11_session.h"

/// Whether a touchpad, or a mouse with a wheel, has natural scrolling switched on; libinput turns its deltas round
/// before anybody sees them. A few round trips: for the moment somebody scrolls.
bool isNaturalScrollingEnabled(const X11Session& session, ScrollSource source);
