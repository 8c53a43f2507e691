#pragma once

#include <QEasingCurve>
#include <QPropertyAnimation>
#include <QWidget>

/// Moves one widget to where it belongs, in an instant or along a short ease.
class Glide {
 public:
  explicit Glide(QWidget& widget) : widget_(widget), animation_(&widget, "pos") {
    animation_.setDuration(kMilliseconds);
    animation_.setEasingCurve(QEasingCurve::OutCubic);
  }

  void to(QPoint target, bool animated) {
    if (isRunning() && animation_.endValue().toPoint() == target && animated) return;
    animation_.stop();
    if (!animated || widget_.pos() == target) return widget_.move(target);
    animation_.setStartValue(widget_.pos());
    animation_.setEndValue(target);
    animation_.start();
  }
  void stop() { animation_.stop(); }
  bool isRunning() const { return animation_.state() == QAbstractAnimation::Running; }
  const QVariantAnimation& animation() const { return animation_; }

 private:
  static constexpr int kMilliseconds = 150;

  QWidget& widget_;
  QPropertyAnimation animation_;
};
