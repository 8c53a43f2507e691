#pragma once

#include <QByteArray>
#include <QHash>

#include <chrono>
#include <mutex>

/// So many requests a second for each key, and at most `burst` at once. Any thread.
class RateLimiter {
 public:
  using Time = std::chrono::steady_clock::time_point;

  /// `perSecond` 0: no limit.
  RateLimiter(double perSecond, double burst) : perSecond_(perSecond), burst_(burst) {}

  /// Whether there is one left for this key; `take` it if so.
  bool admits(const QByteArray& key, Time now, bool take = true);

 private:
  struct Bucket {
    double left = 0;
    Time at;
  };

  double level(const Bucket& bucket, Time now) const;
  void dropFull(Time now);

  const double perSecond_;
  const double burst_;
  std::mutex mutex_;
  QHash<QByteArray, Bucket> buckets_;
};
