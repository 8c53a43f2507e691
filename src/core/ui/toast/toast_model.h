#pragma once

#include <QObject>

#include <chrono>

#include "core/presenters/toast_presenter.h"

/// What the toast's view draws from. Main thread only.
class ToastModel : public QObject {
  Q_OBJECT

 public:
  using Moment = std::chrono::steady_clock::time_point;

  const ToastContent& content() const { return content_; }
  std::chrono::milliseconds duration() const { return duration_; }
  /// When the current toast was shown, on the monotonic clock.
  Moment startDate() const { return startDate_; }
  bool isShown() const { return shown_; }

  void setToast(ToastContent content, std::chrono::milliseconds duration, Moment startDate);
  void setShown(bool shown, bool animated);

 Q_SIGNALS:
  /// Another toast; the view morphs into it when it is shown.
  void toastChanged();
  void shownChanged(bool animated);

 private:
  ToastContent content_;
  std::chrono::milliseconds duration_{0};
  Moment startDate_;
  bool shown_ = false;
};
