#pragma once

/// One step of scrolling over the toast.
struct ScrollStep {
  /// Vertical distance in points as delivered, positive upwards.
  double deltaY = 0;
  /// Whether the system turned the direction round ("natural" scrolling).
  bool inverted = false;
  /// The first step of a gesture.
  bool begins = false;
};

/// Adds up scrolling until it makes a swipe upwards, whichever scrolling direction the user has set.
class ToastSwipe {
 public:
  /// In points.
  static constexpr double kDismissThreshold = 22;

  void reset() { accumulated_ = 0; }

  /// True when this step completes a swipe; counting then starts anew.
  bool add(const ScrollStep& step) {
    if (step.begins) accumulated_ = 0;
    accumulated_ += step.inverted ? -step.deltaY : step.deltaY;
    if (accumulated_ <= kDismissThreshold) return false;
    accumulated_ = 0;
    return true;
  }

 private:
  double accumulated_ = 0;
};
