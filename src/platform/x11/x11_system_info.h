#pragma once

#include "platform/system_info.h"
#include "platform/x11/x11_session.h"

/// Facts of a Linux desktop. What other programs may change is asked for anew each time, in a few round trips.
class X11SystemInfo final : public SystemInfo {
 public:
  explicit X11SystemInfo(const X11Session& session) : session_(session) {}

  QString osVersion() const override;
  QString thisComputer() const override;
  QString systemName() const override;
  QString fileManager() const override;
  QString systemSettings() const override;
  /// The desktop's switch for animations as GTK programs see it; desktops without one have not asked.
  bool isMotionReduced() const override;
  /// The window manager's name.
  QString shortcutOwnerHint() const override;
  QString desktops() const override;

 private:
  X11Session session_;
};
