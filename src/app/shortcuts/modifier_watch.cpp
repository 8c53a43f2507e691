#include "app/shortcuts/modifier_watch.h"

#include <QEvent>

#include <chrono>
#include <utility>

#include "platform/key_codes.h"

using namespace std::chrono_literals;

namespace {

/// How often to look while something is held; with nothing held there is nothing to miss.
constexpr auto kInterval = 40ms;

}  // namespace

ModifierWatch::ModifierWatch(QWidget& window, Query query) : window_(window), query_(std::move(query)) {
  again_.setInterval(kInterval);
  connect(&again_, &QTimer::timeout, this, &ModifierWatch::look);
  window_.installEventFilter(this);
}

bool ModifierWatch::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::WindowActivate:
      if (watched == &window_) start();
      break;
    case QEvent::WindowDeactivate:
    case QEvent::Hide:
      if (watched == &window_) stop();
      break;
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
      // Once an event: it goes through the native window first.
      if (running_ && watched->isWindowType()) look();
      break;
    default:
      break;
  }
  return false;
}

void ModifierWatch::start() {
  if (!std::exchange(running_, true)) qApp->installEventFilter(this);
  look();
}

void ModifierWatch::stop() {
  if (!std::exchange(running_, false)) return;
  qApp->removeEventFilter(this);
  report(0);
}

void ModifierWatch::look() { report(carbonModifiers(query_())); }

void ModifierWatch::report(std::uint32_t held) {
  if (held == 0)
    again_.stop();
  else if (!again_.isActive())
    again_.start();
  if (std::exchange(held_, held) != held) Q_EMIT changed(held);
}
