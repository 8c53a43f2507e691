#pragma once

#include "platform/screen_grabber.h"

/// The system leaves windows out and encodes by itself. It answers on a thread of its own.
class MacScreenGrabber final : public ScreenGrabber {
 public:
  bool leavesWindowsOut() const override { return true; }
  WindowID windowID(QWindow& window) const override;
  void grab(const ScreenArea& area, const std::vector<WindowID>& excludedWindows, const JobRef& job,
            Done done) override;
};
