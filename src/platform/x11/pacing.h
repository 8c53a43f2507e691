#pragma once

#include <chrono>
#include <stop_token>

/// Waiting on the monotonic clock, to absolute points in time: what a wait costs itself does not add up.
namespace pacing {

void sleep(std::chrono::nanoseconds duration);
/// Returns early, in steps of at most 20 ms, when `stop` is requested.
void sleep(std::chrono::milliseconds duration, const std::stop_token& stop);

}  // namespace pacing
