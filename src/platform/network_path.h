#pragma once

#include <functional>

/// The system's opinion on whether there is a way out to a network.
class NetworkPath {
 public:
  /// True: a path is satisfied. Called on a thread of the implementation's, also for unchanged values.
  using Report = std::function<void(bool satisfied)>;

  virtual ~NetworkPath() = default;

  /// Starts watching; the first report follows at once. No report is made after destruction has begun.
  virtual void start(Report report) = 0;
};
