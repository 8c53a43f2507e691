#include "core/ui/toast/toast_controller.h"

#include <utility>

ToastController::ToastController(MakeSurface makeSurface, AppPreferences& preferences, Sounds& sounds, Clock& clock)
    : makeSurface_(std::move(makeSurface)), preferences_(preferences), sounds_(sounds), clock_(clock) {}

void ToastController::show(ToastContent content, std::chrono::milliseconds duration) {
  dismissTask_ = Job::start();
  isDismissing_ = false;
  swipe_.reset();
  const bool wasVisible = isVisible();
  if (!surface_) surface_ = makeSurface_(*this);
  if (content.completes && preferences_.value().soundOnComplete) sounds_.playCompletion();
  if (wasVisible)
    morph(std::move(content), duration);
  else
    appear(std::move(content), duration);
  clock_.after(duration, dismissTask_, [this] { dismiss(true); });
}

void ToastController::morph(ToastContent content, std::chrono::milliseconds duration) {
  model_.setToast(std::move(content), duration, clock_.monotonic());
  // The old one may have been on its way out.
  model_.setShown(true, true);
}

void ToastController::appear(ToastContent content, std::chrono::milliseconds duration) {
  model_.setShown(false, false);
  model_.setToast(std::move(content), duration, clock_.monotonic());
  surface_->orderFront();
  // On the next turn, when the window is there to slide into.
  clock_.after(std::chrono::milliseconds(0), dismissTask_, [this] { model_.setShown(true, true); });
}

void ToastController::dismiss(bool animated) {
  if (!isVisible() || isDismissing_) return;
  dismissTask_ = Job::start();
  isDismissing_ = true;
  model_.setShown(false, animated);
  clock_.after(kExitDuration, dismissTask_, [this] {
    surface_->orderOut();
    isDismissing_ = false;
  });
}

bool ToastController::scrolled(const ScrollStep& step) {
  if (!preferences_.value().swipeToDismiss || !isVisible() || isDismissing_) return false;
  if (!swipe_.add(step)) return false;
  dismiss(true);
  return true;
}

void ToastController::tapped() {
  // A copy: the action may well show the next toast.
  if (const auto onTap = model_.content().onTap; onTap && !isDismissing_) onTap();
}
