#pragma once

#include "base/job.h"
#include "capture/region_selector.h"
#include "core/presenters/toast_presenter.h"
#include "platform/permissions.h"
#include "platform/system_info.h"

/// A region of the screen for the tools, with what the user is told where the screen may not be read. Main thread only.
class RegionPicker {
 public:
  struct Services {
    RegionSelector& regions;
    Permissions& permissions;
    const SystemInfo& system;
    ToastPresenter& toasts;
  };

  explicit RegionPicker(Services services) : services_(services) {}

  /// Whether the screen may be read. If not, the user is told, and shown where to allow it; `icon` is the toast's, its
  /// members besides are filled in.
  bool isAllowed(ToastContent icon);
  /// Lets the user drag a region; `label` and `icon` follow the pointer. Answers once, never after the end of `job`:
  /// with a PNG, or with nothing when the user cancelled.
  void pick(const QString& label, const QString& icon, const JobRef& job, RegionSelector::Completion done);

  /// Asked in `done`: whether the user has turned to something else meanwhile; panels that made room stay away then.
  bool hasUserTurnedAway() const { return services_.regions.hasUserTurnedAway(); }

 private:
  Services services_;
};
