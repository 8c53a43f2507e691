#pragma once

#include <QThread>

#include <mutex>

#include "platform/network_path.h"

/// Watches the kernel's default routes, and NetworkManager where it runs, on a thread of its own that sleeps between
/// changes.
class X11NetworkPath final : public NetworkPath {
 public:
  X11NetworkPath() = default;
  ~X11NetworkPath() override;

  void start(Report report) override;

 private:
  void tell(bool satisfied);

  QThread thread_;
  /// Held while reporting, so that nothing is reported any more once destruction has begun.
  std::mutex mutex_;
  Report report_;
};
