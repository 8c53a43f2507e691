#pragma once

/// Finds out whether there is a display to work on and, where the system has several kinds, picks the one whose
/// shortcuts and typing we know. To be called before any QGuiApplication; false: none, only the command line works.
bool prepareDisplay();
