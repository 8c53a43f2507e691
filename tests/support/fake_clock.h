#pragma once

#include <QCoreApplication>
#include <QPointer>

#include <algorithm>
#include <vector>

#include "base/clock.h"

/// A clock that stands still until `advance`.
class FakeClock final : public Clock {
 public:
  Seconds now() const override { return wall_ + elapsed_; }
  std::chrono::steady_clock::time_point monotonic() const override {
    return std::chrono::steady_clock::time_point(elapsed_);
  }

  /// Lets time pass and runs what falls due, in order.
  void advance(std::chrono::milliseconds duration) {
    const auto end = elapsed_ + duration;
    for (;;) {
      const auto next = std::ranges::min_element(pending_, {}, &Entry::due);
      if (next == pending_.end() || next->due > end) break;
      const Entry entry = std::move(*next);
      pending_.erase(next);
      elapsed_ = std::max(elapsed_, entry.due);
      if (entry.scope) entry.callback();
    }
    elapsed_ = end;
  }

  /// The computer sleeps: the wall clock goes on, and nothing falls due.
  void sleep(Seconds duration) { wall_ += duration; }

  /// As `advance`, in small steps, and whatever waits for the event loop gets its turn all the while.
  void pass(std::chrono::milliseconds duration) {
    constexpr std::chrono::milliseconds kStep(10);
    for (auto passed = std::chrono::milliseconds(0); passed < duration; passed += kStep) {
      QCoreApplication::processEvents();
      QCoreApplication::sendPostedEvents();
      advance(kStep);
    }
    QCoreApplication::processEvents();
  }

 protected:
  void schedule(std::chrono::milliseconds delay, QObject* scope, std::function<void()> callback) override {
    pending_.push_back({elapsed_ + delay, scope, std::move(callback)});
  }

 private:
  struct Entry {
    std::chrono::milliseconds due;
    QPointer<QObject> scope;
    std::function<void()> callback;
  };

  Seconds wall_{1'700'000'000.0};
  std::chrono::milliseconds elapsed_{0};
  std::vector<Entry> pending_;
};
