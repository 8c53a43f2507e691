#pragma once

#include "core/hotkeys/key_press.h"

class QKeyEvent;

/// The one place where a Qt key event becomes a KeyPress. Key codes come from the key's symbol, else from its position.
KeyPress keyPress(const QKeyEvent& event);
/// The combination a recorder stores: key code and Carbon bits (Control, Option, Shift, Command are the keyboard's
/// Ctrl, Alt, Shift and Super on Linux).
Hotkey recordedHotkey(const QKeyEvent& event);
