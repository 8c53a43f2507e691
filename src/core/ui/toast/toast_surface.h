#pragma once

/// The window of the toast as its controller needs it. Main thread only.
class ToastSurface {
 public:
  virtual ~ToastSurface() = default;

  virtual bool isOnScreen() const = 0;
  /// Hangs the window from the top of the active screen and orders it front, whichever application is active.
  virtual void orderFront() = 0;
  virtual void orderOut() = 0;
};
