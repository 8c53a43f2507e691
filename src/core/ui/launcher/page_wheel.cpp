#include "core/ui/launcher/page_wheel.h"

#include <QWheelEvent>

#include <cmath>

namespace {

/// One step of an ordinary wheel, in Qt's eighths of a degree.
constexpr double kStep = 120;
/// Wheels without gesture phases may spin on; steps this soon after a turn belong to it.
constexpr quint64 kSettleMilliseconds = 120;

}  // namespace

int PageWheel::pages(const QWheelEvent& event) {
  if (event.phase() == Qt::ScrollBegin) {
    travelled_ = 0;
    swipeIsSpent_ = false;
  }
  if (event.phase() == Qt::ScrollMomentum || swipeIsSpent_) return 0;
  if (event.phase() == Qt::NoScrollPhase && event.timestamp() - turnedAt_ < kSettleMilliseconds) return 0;
  const QPoint angle = event.angleDelta();
  travelled_ -= std::abs(angle.x()) > std::abs(angle.y()) ? angle.x() : angle.y();
  if (std::abs(travelled_) < kStep) return 0;
  const int pages = travelled_ > 0 ? 1 : -1;
  travelled_ = 0;
  turnedAt_ = event.timestamp();
  swipeIsSpent_ = event.phase() != Qt::NoScrollPhase;
  return pages;
}
