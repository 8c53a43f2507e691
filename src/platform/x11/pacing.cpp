#include "platform/x11/pacing.h"

#include <algorithm>
#include <cerrno>
#include <ctime>

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

namespace {

/// libstdc++'s steady clock is CLOCK_MONOTONIC.
void sleepUntil(Clock::time_point end) {
  const auto since = std::chrono::duration_cast<std::chrono::nanoseconds>(end.time_since_epoch()).count();
  const timespec time{since / 1'000'000'000, since % 1'000'000'000};
  while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &time, nullptr) == EINTR) {
  }
}

}  // namespace

void pacing::sleep(std::chrono::nanoseconds duration) { sleepUntil(Clock::now() + duration); }

void pacing::sleep(std::chrono::milliseconds duration, const std::stop_token& stop) {
  const auto end = Clock::now() + duration;
  while (Clock::now() < end && !stop.stop_requested()) sleepUntil(std::min(end, Clock::now() + 20ms));
}
