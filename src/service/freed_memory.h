#pragma once

/// Lets large blocks go back to the system when they are freed, whatever was freed before. Called once, before the
/// first thread; where the system's allocator does so by itself, it does nothing.
void returnLargeBlocks();
