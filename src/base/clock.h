#pragma once

#include <chrono>
#include <functional>

#include "base/job.h"

/// Time as the logic sees it: the wall clock for what is stored, delays for what is awaited. Main thread only.
class Clock {
 public:
  using Seconds = std::chrono::duration<double>;

  virtual ~Clock() = default;

  /// Time since 1970-01-01 00:00 UTC, with fractions of a second.
  virtual Seconds now() const = 0;
  /// Time from an arbitrary start, never set back.
  virtual std::chrono::steady_clock::time_point monotonic() const = 0;

  /// Runs `callback` once on the main thread after `delay`, unless the job ends before.
  template <class Callback>
  void after(std::chrono::milliseconds delay, const Job& job, Callback callback) {
    if (job.isRunning()) schedule(delay, job.scope(), job.bind(std::move(callback)));
  }

 protected:
  virtual void schedule(std::chrono::milliseconds delay, QObject* scope, std::function<void()> callback) = 0;
};

/// The system's clocks and precise Qt timers.
class SystemClock final : public Clock {
 public:
  Seconds now() const override;
  std::chrono::steady_clock::time_point monotonic() const override;

 protected:
  void schedule(std::chrono::milliseconds delay, QObject* scope, std::function<void()> callback) override;
};
