#pragma once

#include <memory>

#include "platform/key_events.h"

/// Typing through XTEST on the display of $DISPLAY, by a worker thread with a connection of its own. Without a display
/// or without XTEST and XKB every sequence reports an error.
std::unique_ptr<KeyEvents> makeX11KeyEvents();
