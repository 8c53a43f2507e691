#include "service/log.h"

#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdarg>
#include <cstdio>
#include <ctime>

void logLine(const char* format, ...) {
  std::array<char, 1024> line{};
  const auto now = std::chrono::system_clock::now();
  const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
  const auto part = std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count() % 1000;
  std::tm utc{};
  gmtime_r(&seconds, &utc);
  std::size_t size = std::strftime(line.data(), line.size(), "%Y-%m-%dT%H:%M:%S", &utc);
  size += static_cast<std::size_t>(
      std::snprintf(line.data() + size, line.size() - size, ".%03dZ ", static_cast<int>(part)));
  std::va_list arguments;
  va_start(arguments, format);
  const int wanted = std::vsnprintf(line.data() + size, line.size() - size - 1, format, arguments);
  va_end(arguments);
  size = std::min(size + static_cast<std::size_t>(std::max(wanted, 0)), line.size() - 2);
  line[size++] = '\n';
  [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, line.data(), size);
}
