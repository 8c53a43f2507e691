#pragma once

#include <cstdint>

/// Copies up to `size` bytes between two open files, each from where it stands, without bringing them into this
/// process; a file system that can shares the blocks instead. 0 at the end, on an error, and where the system cannot
/// do so for these two files: what remains is to be read and written.
std::int64_t copyFileRange(int from, int to, std::int64_t size);
