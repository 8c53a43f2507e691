#pragma once

#include <QString>
#include <QStringList>

#include "platform/key_legends.h"

// Combinations of the panels' own keys stand once in the texts, with ⌘. A PC keyboard has no such key: there the panels
// take Ctrl for it, and that is what has to be read. Global shortcuts are another matter: their ⌘ is the Super key.

/// The family of keyboards of the system that this was built for.
KeyboardKind systemKeyboard();

/// `text` with the combinations in it as they are pressed: on a PC keyboard "⇧⌘S" is "Ctrl+Shift+S".
QString keyText(const QString& text, KeyboardKind keyboard = systemKeyboard());

/// The same for the caps of one combination: {"⇧", "⌘", "S"} is {"Ctrl", "Shift", "S"}.
QStringList keyCaps(const QStringList& caps, KeyboardKind keyboard = systemKeyboard());
