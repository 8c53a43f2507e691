#include "base/clock.h"

#include <QTimer>

Clock::Seconds SystemClock::now() const { return std::chrono::system_clock::now().time_since_epoch(); }

std::chrono::steady_clock::time_point SystemClock::monotonic() const { return std::chrono::steady_clock::now(); }

void SystemClock::schedule(std::chrono::milliseconds delay, QObject* scope, std::function<void()> callback) {
  QTimer::singleShot(delay, Qt::PreciseTimer, scope, std::move(callback));
}
