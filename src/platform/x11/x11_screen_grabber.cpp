#include "platform/x11/x11_screen_grabber.h"

#include <xcb/randr.h>

#include <QTimer>
#include <QWindow>

#include <algorithm>

#include "base/background.h"
#include "platform/x11/x11_panel_traces.h"
#include "platform/x11/x11_screen_image.h"
#include "platform/x11/xcb_reply.h"

using namespace std::chrono_literals;

namespace {

/// What other programs need, at the least, to paint what a panel has covered.
constexpr auto kRepainting = 80ms;
/// Longer than compositors fade. What moves by itself behind the panel does not stand still ever.
constexpr auto kPatience = 400ms;
constexpr auto kBetweenLooks = 16ms;

/// The server has done all that was asked of it so far.
void roundTrip(const X11Session& session) {
  const XcbReply<xcb_get_input_focus_reply_t> answer(
      xcb_get_input_focus_reply(session.connection, xcb_get_input_focus(session.connection), nullptr));
}

QRect pixelsOf(const xcb_randr_monitor_info_t& monitor) {
  return {monitor.x, monitor.y, monitor.width, monitor.height};
}

/// A screen of ours is rounded to whole points; at a fractional scale that is up to a pixel more than the monitor has.
QRect withinMonitor(const X11Session& session, const QPoint& origin, const QRect& pixels) {
  const XcbReply<xcb_randr_get_monitors_reply_t> monitors(xcb_randr_get_monitors_reply(
      session.connection, xcb_randr_get_monitors(session.connection, session.root, true), nullptr));
  if (!monitors) return pixels;
  for (auto each = xcb_randr_get_monitors_monitors_iterator(monitors.get()); each.rem > 0;
       xcb_randr_monitor_info_next(&each)) {
    const QRect monitor = pixelsOf(*each.data);
    if (monitor.topLeft() == origin && monitor.adjusted(0, 0, 1, 1).contains(pixels)) return monitor & pixels;
  }
  return pixels;
}

}  // namespace

X11ScreenGrabber::X11ScreenGrabber(const X11Session& session, std::shared_ptr<X11PanelTraces> traces)
    : session_(session), traces_(std::move(traces)) {}

ScreenGrabber::WindowID X11ScreenGrabber::windowID(QWindow& window) const { return window.winId(); }

void X11ScreenGrabber::grab(const ScreenArea& area, const std::vector<WindowID>&, const JobRef& job, Done done) {
  // Qt leaves the origin of a screen in native pixels.
  const QPoint origin = area.screen.topLeft();
  const QRect pixels = withinMonitor(session_, origin, area.pixels.translated(origin));
  whenClear(job, [job, pixels, done = std::move(done)] {
    const auto read = [pixels](const std::stop_token&) { return x11ScreenImage(pixels); };
    runInBackground(job, read, [done](std::expected<QImage, QString> image) {
      if (!image) return done(std::unexpected(ScreenCaptureError{image.error()}));
      done(ScreenPicture{std::move(*image), {}});
    });
  });
}

void X11ScreenGrabber::whenClear(const JobRef& job, const Clear& clear) {
  roundTrip(session_);
  if (traces_->youngerThan(kPatience).empty()) return clear();
  look(job, {}, clear);
}

void X11ScreenGrabber::look(const JobRef& job, const QImage& before, const Clear& clear) {
  const auto traces = traces_->youngerThan(kPatience);
  if (traces.empty()) return clear();
  QRect place;
  for (const auto& trace : traces) place |= trace.pixels;
  const auto gone = std::ranges::max(traces, {}, &X11PanelTraces::Trace::gone).gone;
  const QImage now = x11ScreenImage(place).value_or(QImage());
  if (X11PanelTraces::Clock::now() - gone >= kRepainting && now == before) return clear();
  QTimer::singleShot(kBetweenLooks, job.scope(), job.bind([this, job, now, clear] { look(job, now, clear); }));
}
