#pragma once

#include <deque>
#include <functional>

#include "base/clock.h"

/// Makes what the first press of a shortcut should not have to make, once the start is over. One step at a time: a key
/// that is pressed meanwhile waits for one of them at most.
class WarmUp {
 public:
  using Step = std::function<void()>;

  explicit WarmUp(Clock& clock) : clock_(clock) {}

  /// Begins 400 ms from now. Nothing is run any more when this is gone.
  void begin(std::deque<Step> steps);

 private:
  void runNext();

  Clock& clock_;
  std::deque<Step> steps_;
  Job job_ = Job::start();
};
