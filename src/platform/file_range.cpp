#include "platform/file_range.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>

#ifdef VANTLE_HAS_COPY_FILE_RANGE

std::int64_t copyFileRange(int from, int to, std::int64_t size) {
  ssize_t copied = -1;
  do copied = ::copy_file_range(from, nullptr, to, nullptr, static_cast<std::size_t>(size), 0);
  while (copied < 0 && errno == EINTR);
  return std::max<ssize_t>(copied, 0);
}

#else

std::int64_t copyFileRange(int, int, std::int64_t) { return 0; }

#endif
