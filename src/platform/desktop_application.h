#pragma once

#include <functional>

/// This program as the desktop sees it: its appearance and its place among the other applications. As it stands, of a
/// desktop that has no switch for the one and brings an application forward with its windows. Main thread only.
class DesktopApplication {
 public:
  virtual ~DesktopApplication() = default;

  /// True: the frames, menus and dialogs that the system draws are dark whatever it says. False: as it says.
  virtual void forceDark([[maybe_unused]] bool dark) {}
  /// Calls `changed` on the main thread with what the desktop wants, soon and at each change; never where it does not
  /// say. While dark is forced, the answer may be that.
  // NOLINTNEXTLINE(performance-unnecessary-value-param): implementations keep it
  virtual void watchAppearance([[maybe_unused]] std::function<void(bool dark)> changed) {}
  /// Makes the program the active application. Due whenever an ordinary window is opened, and only then: raising a
  /// window does not do it, so that panels can be raised over the user's own application.
  virtual void activate() {}
};
