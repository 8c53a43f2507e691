#pragma once

#include <functional>
#include <memory>

#include "base/clock.h"
#include "core/presenters/toast_presenter.h"
#include "core/settings/app_preferences.h"
#include "core/ui/toast/toast_model.h"
#include "core/ui/toast/toast_surface.h"
#include "core/ui/toast/toast_swipe.h"
#include "platform/sounds.h"

/// Shows one toast at a time; each new one takes the place of the previous. Owns the model, the window (made at the
/// first toast and kept) and the pending dismissal. Main thread only; nothing runs while no toast is up.
class ToastController final : public ToastPresenter {
 public:
  using MakeSurface = std::function<std::unique_ptr<ToastSurface>(ToastController&)>;

  /// The window goes after this much, when the exit animation is over.
  static constexpr std::chrono::milliseconds kExitDuration{420};

  ToastController(MakeSurface makeSurface, AppPreferences& preferences, Sounds& sounds, Clock& clock);

  ToastModel& model() { return model_; }

  void show(ToastContent content, std::chrono::milliseconds duration) override;
  void dismiss(bool animated) override;

  /// The user scrolled over the toast; false passes the event on.
  bool scrolled(const ScrollStep& step);
  /// The user clicked the card.
  void tapped();

 private:
  bool isVisible() const { return surface_ && surface_->isOnScreen(); }
  void morph(ToastContent content, std::chrono::milliseconds duration);
  void appear(ToastContent content, std::chrono::milliseconds duration);

  MakeSurface makeSurface_;
  AppPreferences& preferences_;
  Sounds& sounds_;
  Clock& clock_;
  ToastModel model_;
  /// The pending entrance and automatic dismissal, or the end of the exit: a new toast cancels either.
  Job dismissTask_;
  ToastSwipe swipe_;
  bool isDismissing_ = false;
  std::unique_ptr<ToastSurface> surface_;
};
