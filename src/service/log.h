#pragma once

/// One line on stderr with the time before it, written at once. Any thread.
[[gnu::format(printf, 1, 2)]] void logLine(const char* format, ...);
