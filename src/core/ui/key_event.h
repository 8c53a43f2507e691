#pragma once

#include <optional>

#include "core/hotkeys/key_press.h"

class QKeyEvent;

/// The one place where a Qt key event becomes a KeyPress. Key codes come from the key's symbol, else from its position.
KeyPress keyPress(const QKeyEvent& event);
/// Text that no single key typed: what an input method commits.
KeyPress textPress(const QString& text);
/// The combination a recorder stores: key code and Carbon bits (Control, Option, Shift, Command are the keyboard's
/// Ctrl, Alt, Shift and Super on Linux). None for keys that cannot be bound, such as a modifier alone.
std::optional<Hotkey> recordedHotkey(const QKeyEvent& event);
