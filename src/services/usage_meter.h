#pragma once

#include <QString>

#include <map>
#include <vector>

#include "services/quota_store.h"

/// One counter as people are shown it.
struct UsageMeter {
  /// The service's name of the counter, and ours.
  QString metric;
  QString label;
  MetricUsage usage;

  bool operator==(const UsageMeter&) const = default;

  /// How much of the allowance is used up, 0 to 1; all of one that allows nothing.
  double fraction() const;
  bool isUsedUp() const { return usage.limit <= usage.used; }
  /// "3 of 100".
  QString counts() const;
  /// "97 left this month".
  QString remaining() const;
};

/// The known counters in a fixed order, then those that this version does not know by name.
std::vector<UsageMeter> usageMeters(const std::map<QString, MetricUsage>& metrics);
