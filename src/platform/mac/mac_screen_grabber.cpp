#include "platform/mac/mac_screen_grabber.h"

#include <QCoreApplication>
#include <QWindow>

#include <memory>

#include "platform/mac/mac_api.h"

namespace {

struct Call {
  JobRef job;
  ScreenGrabber::Done done;
};

using Result = std::expected<ScreenPicture, ScreenCaptureError>;

/// Runs on a thread of the system's; the job is looked at on the main thread only.
void captured(void* context, const void* png, long long size, const char* failure) {
  Result result = std::unexpected(ScreenCaptureError{QString::fromUtf8(failure)});
  if (png) result = ScreenPicture{{}, QByteArray(static_cast<const char*>(png), static_cast<qsizetype>(size))};
  auto answer = [call = std::shared_ptr<Call>(static_cast<Call*>(context)), result = std::move(result)] {
    call->job.bind(call->done)(result);
  };
  // Moved, so that what the callback holds ends on the main thread too.
  QMetaObject::invokeMethod(QCoreApplication::instance(), std::move(answer), Qt::QueuedConnection);
}

mac::DisplayArea displayArea(const ScreenArea& area) {
  const QRectF& points = area.points;
  return {.displayX = double(area.screen.x()),
          .displayY = double(area.screen.y()),
          .x = points.x(),
          .y = points.y(),
          .width = points.width(),
          .height = points.height(),
          .pixelWidth = static_cast<std::uint32_t>(area.pixels.width()),
          .pixelHeight = static_cast<std::uint32_t>(area.pixels.height())};
}

}  // namespace

ScreenGrabber::WindowID MacScreenGrabber::windowID(QWindow& window) const {
  return mac::windowNumber(reinterpret_cast<void*>(window.winId()));
}

void MacScreenGrabber::grab(const ScreenArea& area, const std::vector<WindowID>& excludedWindows, const JobRef& job,
                            Done done) {
  const mac::DisplayArea display = displayArea(area);
  std::vector<std::uint32_t> windows;
  for (const WindowID id : excludedWindows) windows.push_back(static_cast<std::uint32_t>(id));
  mac::captureDisplay(&display, windows.data(), static_cast<std::uint32_t>(windows.size()), captured,
                      new Call{job, std::move(done)});
}
