#include "service/accounts/rate_limiter.h"

#include <algorithm>

namespace {

/// Keys that are remembered; those who come meanwhile share one bucket.
constexpr qsizetype kMostKeys = 50'000;

}  // namespace

double RateLimiter::level(const Bucket& bucket, Time now) const {
  const std::chrono::duration<double> passed = now - bucket.at;
  return std::min(burst_, bucket.left + passed.count() * perSecond_);
}

bool RateLimiter::admits(const QByteArray& key, Time now, bool take) {
  if (perSecond_ <= 0) return true;
  const std::lock_guard lock(mutex_);
  if (buckets_.size() >= kMostKeys && !buckets_.contains(key)) dropFull(now);
  const bool isKnown = buckets_.contains(key) || buckets_.size() < kMostKeys;
  const QByteArray used = isKnown ? key : QByteArray();
  const auto found = buckets_.find(used);
  const double left = found == buckets_.end() ? burst_ : level(*found, now);
  const bool admitted = left >= 1;
  if (take && admitted) buckets_.insert(used, {left - 1, now});
  return admitted;
}

void RateLimiter::dropFull(Time now) {
  buckets_.removeIf([&](const auto& entry) { return level(entry.value(), now) >= burst_; });
}
