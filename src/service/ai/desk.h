#pragma once

#include <atomic>

#include "service/workers.h"

/// Threads of their own for what waits for a provider, with a queue that has an end.
class Desk {
 public:
  explicit Desk(int threads) : most_(threads * (1 + kWaitingPerThread)), workers_(threads) {}

  /// False: so many wait already that this one would wait in vain.
  bool start(Workers::Task task) {
    if (taken_.fetch_add(1) >= most_) {
      --taken_;
      return false;
    }
    workers_.start([this, task = std::move(task)] {
      task();
      --taken_;
    });
    return true;
  }

 private:
  static constexpr int kWaitingPerThread = 4;

  const int most_;
  std::atomic<int> taken_ = 0;
  Workers workers_;
};
