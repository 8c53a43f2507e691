#pragma once

#include <QWidget>

#include "base/clock.h"
#include "core/ui/toast/toast_controller.h"
#include "platform/panel_window.h"
#include "platform/system_info.h"

class ToastView;

/// The toast's window: 600 × 300, transparent but for the card, above everything, and never with the keyboard. Clicks
/// beside the card reach what is behind.
class ToastPanel final : public QWidget, public ToastSurface {
  Q_OBJECT

 public:
  static constexpr QSize kSize{600, 300};

  ToastPanel(ToastController& controller, PanelWindow& native, const SystemInfo& system, Clock& clock);

  bool isOnScreen() const override { return isVisible(); }
  void orderFront() override;
  void orderOut() override { hide(); }

 private:
  void place();
  void shape();

  PanelWindow& native_;
  const SystemInfo& system_;
  ToastModel& model_;
  /// Asked anew whenever a toast comes: a compositor may start after we did.
  bool translucent_ = true;
  ToastView* view_;
  QRegion inputRegion_;
};
