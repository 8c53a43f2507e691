#pragma once

#include <QByteArray>
#include <QImage>
#include <QRect>
#include <QRectF>
#include <QString>

#include <cstdint>
#include <expected>
#include <functional>
#include <vector>

#include "base/job.h"

class QWindow;

/// Why there is no picture of the screen. Told to the log only: to the user a capture happens or does not.
struct ScreenCaptureError {
  QString reason;
  const QString& description() const { return reason; }
};

/// A rectangle of one screen.
struct ScreenArea {
  /// The whole screen as QScreen::geometry() has it; what names the screen.
  QRect screen;
  /// From the screen's top left corner, in logical pixels.
  QRectF points;
  /// The same in native pixels.
  QRect pixels;
};

/// A grabbed area: its native pixels, or a PNG of them where the system does the encoding too.
struct ScreenPicture {
  QImage pixels;
  QByteArray png;
};

/// Pictures of what is on the screen, without the pointer. As it stands, of a system that shows nobody its screen. Main
/// thread only.
class ScreenGrabber {
 public:
  using WindowID = std::uint64_t;
  using Done = std::function<void(std::expected<ScreenPicture, ScreenCaptureError>)>;

  virtual ~ScreenGrabber() = default;

  /// Whether `grab` can leave windows out of the picture. Where it cannot, who covers the screen has to grab before.
  virtual bool leavesWindowsOut() const { return false; }
  /// What `grab` knows the window by; the native window exists.
  virtual WindowID windowID([[maybe_unused]] QWindow& window) const { return 0; }
  /// Calls `done` on a later turn of the event loop, unless the job ends before. Panels of ours that have just been
  /// hidden are waited for until they are off the screen.
  virtual void grab([[maybe_unused]] const ScreenArea& area,
                    [[maybe_unused]] const std::vector<WindowID>& excludedWindows, const JobRef& job, Done done) {
    job.later([done = std::move(done)] {
      done(std::unexpected(ScreenCaptureError{QStringLiteral("There is no screen to capture")}));
    });
  }
};
