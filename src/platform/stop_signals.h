#pragma once

#include <atomic>
#include <csignal>
#include <stop_token>
#include <thread>

/// While it lives, the signals that ask a process to end (SIGINT, SIGTERM, SIGHUP) ask for a stop instead; those that
/// the process ignores stay ignored. To be made before any other thread, which would take the signals.
class StopSignals {
 public:
  StopSignals();
  ~StopSignals();
  StopSignals(const StopSignals&) = delete;
  StopSignals& operator=(const StopSignals&) = delete;

  std::stop_token token() const { return stop_.get_token(); }
  /// The signal that came; 0 before.
  int taken() const { return taken_; }

 private:
  void wait();

  sigset_t signals_{};
  sigset_t before_{};
  std::stop_source stop_;
  std::atomic<int> taken_ = 0;
  std::atomic<bool> isEnding_ = false;
  std::thread waiting_;
};
