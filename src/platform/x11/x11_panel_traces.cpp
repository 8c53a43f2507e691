#include "platform/x11/x11_panel_traces.h"

#include <QScreen>
#include <QWindow>

using namespace std::chrono_literals;

namespace {

constexpr auto kLongestAge = 1000ms;

/// Qt leaves a screen's origin in native pixels and scales what is on it.
QRect nativePixels(const QWindow& window) {
  const double scale = window.devicePixelRatio();
  const QPointF origin = window.screen() ? window.screen()->geometry().topLeft() : QPoint();
  const QRectF local = QRectF(window.geometry()).translated(-origin);
  return QRectF(local.topLeft() * scale + origin, local.size() * scale).toAlignedRect();
}

}  // namespace

void X11PanelTraces::follow(QWindow& panel) {
  disconnect(&panel, &QWindow::visibleChanged, this, nullptr);
  connect(&panel, &QWindow::visibleChanged, this, [this, &panel](bool visible) {
    if (!visible) note(panel);
  });
}

void X11PanelTraces::note(const QWindow& panel) {
  // Nobody may ask for hours.
  youngerThan(kLongestAge);
  traces_.push_back({nativePixels(panel), Clock::now()});
}

std::vector<X11PanelTraces::Trace> X11PanelTraces::youngerThan(std::chrono::milliseconds age) {
  const auto oldest = Clock::now() - age;
  std::erase_if(traces_, [oldest](const Trace& trace) { return trace.gone < oldest; });
  return traces_;
}
