#pragma once

#include <QDateTime>
#include <QImage>

#include <memory>
#include <vector>

#include "platform/portal/portal.h"
#include "platform/screen_grabber.h"

/// Pictures that the desktop takes of all its screens; who asks for several at once gets pieces of one. The desktop
/// may ask the user whether it should. What it leaves as a file is read and removed.
class PortalScreenGrabber final : public ScreenGrabber {
 public:
  explicit PortalScreenGrabber(std::shared_ptr<Portal> portal,
                               std::chrono::milliseconds patience = std::chrono::minutes(1));

  void grab(const ScreenArea& area, const std::vector<WindowID>& excludedWindows, const JobRef& job,
            Done done) override;

 private:
  struct Wanted {
    ScreenArea area;
    JobRef job;
    Done done;
  };
  using Whole = std::expected<QImage, ScreenCaptureError>;

  void ask();
  void take(const std::expected<QVariantMap, PortalError>& answer);
  void hand(const Whole& whole);

  std::shared_ptr<Portal> portal_;
  std::chrono::milliseconds patience_;
  std::vector<Wanted> wanted_;
  QDateTime asked_;
  /// The picture that is being taken.
  Job run_;
};
