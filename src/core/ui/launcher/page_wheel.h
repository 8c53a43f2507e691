#pragma once

#include <QtGlobal>

class QWheelEvent;

/// Turns wheel steps and swipes into pages: one page a wheel step, one a swipe, however long the swipe rolls on.
class PageWheel {
 public:
  /// -1, 0 or 1.
  int pages(const QWheelEvent& event);

 private:
  double travelled_ = 0;
  quint64 turnedAt_ = 0;
  bool swipeIsSpent_ = false;
};
