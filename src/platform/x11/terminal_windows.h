#pragma once

#include <QByteArray>

/// Whether a window of this WM_CLASS (instance and class, each ended by a zero) is one where Ctrl+C is not "copy": it
/// interrupts what runs in a terminal, and starts a command in some editors.
bool isTerminalClass(const QByteArray& wmClass);
/// Whether the process, or one that it started from the same program, runs others in a terminal of its own: a terminal
/// that nobody has heard of, or an editor with one inside.
bool hasTerminals(int process);
