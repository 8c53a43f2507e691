#pragma once

#include <functional>

/// The window side of the launcher, as its controller knows it. Main thread only.
class LauncherPanel {
 public:
  virtual ~LauncherPanel() = default;

  /// Shows the panel and directs the keyboard to it; ends an exit that is still running.
  virtual void present() = 0;
  /// Gives the keyboard back and hides; `hidden` is called once nothing of the panel is left on the screen, at once
  /// when the exit is not animated.
  virtual void leave(bool animated, std::function<void()> hidden) = 0;
};
