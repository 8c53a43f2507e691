#pragma once

#include <utility>
#include <vector>

#include "platform/screen_grabber.h"

/// Answers with pictures of one colour, or with `error`, when the test says so.
class FakeScreenGrabber final : public ScreenGrabber {
 public:
  struct Asked {
    ScreenArea area;
    std::vector<WindowID> excluded;
    std::function<void()> answer;
  };

  bool leavesWindowsOut() const override { return live; }
  WindowID windowID(QWindow& window) const override { return reinterpret_cast<WindowID>(&window); }
  void grab(const ScreenArea& area, const std::vector<WindowID>& excluded, const JobRef& job, Done done) override {
    const auto answer = job.bind([this, size = area.pixels.size(), done = std::move(done)] {
      if (!error.isEmpty()) return done(std::unexpected(ScreenCaptureError{error}));
      QImage picture(size, QImage::Format_RGB32);
      picture.fill(color);
      done(live ? ScreenPicture{{}, "PNG"} : ScreenPicture{picture, {}});
    });
    asked.push_back({area, excluded, answer});
  }

  /// All that was asked since the last call.
  void answerAll() {
    for (auto& each : std::exchange(asked, {})) each.answer();
  }

  bool live = false;
  QString error;
  QColor color = Qt::red;
  std::vector<Asked> asked;
};
