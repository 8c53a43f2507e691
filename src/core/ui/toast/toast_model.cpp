#include "core/ui/toast/toast_model.h"

#include <utility>

void ToastModel::setToast(ToastContent content, std::chrono::milliseconds duration, Moment startDate) {
  content_ = std::move(content);
  duration_ = duration;
  startDate_ = startDate;
  Q_EMIT toastChanged();
}

void ToastModel::setShown(bool shown, bool animated) {
  if (shown == shown_) return;
  shown_ = shown;
  Q_EMIT shownChanged(animated);
}
