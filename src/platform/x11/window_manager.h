#pragma once

#include <QByteArray>

#include "platform/x11/x11_session.h"

/// The name by which the window manager announces itself; empty without one. Three round trips.
QByteArray windowManagerName(const X11Session& session);
