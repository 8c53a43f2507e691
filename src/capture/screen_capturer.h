#pragma once

#include <QRectF>

#include <functional>
#include <vector>

#include "platform/screen_grabber.h"

class QScreen;

/// Rectangles of a screen as PNG. Encodes on a thread of the pool; calls back on the main thread, unless the job ends
/// before. Main thread only.
class ScreenCapturer {
 public:
  using PictureDone = std::function<void(std::expected<QImage, ScreenCaptureError>)>;
  using PNGDone = std::function<void(std::expected<QByteArray, ScreenCaptureError>)>;
  using WindowIDs = std::vector<ScreenGrabber::WindowID>;

  explicit ScreenCapturer(ScreenGrabber& grabber) : grabber_(grabber) {}

  /// `globalRect` in global logical coordinates; what of it is beside the screen is cut off.
  void capturePNG(const QRectF& globalRect, const QScreen& screen, const WindowIDs& excludingWindowIDs,
                  const JobRef& job, PNGDone done);
  /// The whole screen as it is now, in native pixels.
  void takePicture(const QScreen& screen, const JobRef& job, PictureDone done);
  /// The same rectangle, cut out of an earlier picture of the whole screen.
  void cutPNG(const QImage& picture, const QRectF& globalRect, const QScreen& screen, const JobRef& job, PNGDone done);

 private:
  ScreenGrabber& grabber_;
};
