#include "service/freed_memory.h"

#ifdef VANTLE_HAS_MALLOPT
#include <malloc.h>
#endif

void returnLargeBlocks() {
#ifdef VANTLE_HAS_MALLOPT
  // glibc raises this bound by itself, up to 32 MiB, as soon as a block of that size is freed; after that every
  // thread's arena keeps as much as the largest body that it has held.
  constexpr int kLargeBlock = 1024 * 1024;
  mallopt(M_MMAP_THRESHOLD, kLargeBlock);
#endif
}
