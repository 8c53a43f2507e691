#pragma once

#include <QImage>

#include <memory>

#include "platform/screen_grabber.h"
#include "platform/x11/x11_session.h"

class X11PanelTraces;

/// Reads the root window, on a thread of the pool. A window cannot be left out of it, so whoever wants none of ours
/// hides them; those just hidden are waited for until their place stands still.
class X11ScreenGrabber final : public ScreenGrabber {
 public:
  X11ScreenGrabber(const X11Session& session, std::shared_ptr<X11PanelTraces> traces);

  WindowID windowID(QWindow& window) const override;
  void grab(const ScreenArea& area, const std::vector<WindowID>& excludedWindows, const JobRef& job,
            Done done) override;

 private:
  using Clear = std::function<void()>;

  /// Calls `clear` when the panels that have just gone are off the screen; at once when there are none.
  void whenClear(const JobRef& job, const Clear& clear);
  void look(const JobRef& job, const QImage& before, const Clear& clear);

  X11Session session_;
  std::shared_ptr<X11PanelTraces> traces_;
};
