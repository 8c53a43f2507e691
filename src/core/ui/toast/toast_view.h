#pragma once

#include <QBasicTimer>
#include <QVariantAnimation>
#include <QWidget>

#include <optional>

#include "core/ui/toast/toast_controller.h"
#include "core/ui/toast/toast_layout.h"
#include "platform/panel_window.h"

class QAbstractButton;

/// Whether the toast moves: not without translucency, and not when the system asks for less motion.
enum class ToastMotion { none, full };

/// Draws the toast's card, hanging from the top centre of an otherwise transparent widget, and its way in, out and into
/// the next toast. A timer runs only while a countdown or spinner is on screen.
class ToastView : public QWidget {
  Q_OBJECT

 public:
  ToastView(ToastController& controller, const PanelWindow& native, Clock& clock);

  /// For the toasts that follow. Without translucency the card has no shadow and does not fade.
  void setLook(ToastMotion motion, bool translucent);

  /// The card where it is now, on its way in or out included.
  QRect cardRect() const;

 Q_SIGNALS:
  /// The card has moved, grown, come or gone.
  void cardMoved();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void timerEvent(QTimerEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  /// One toast with its layout, so that the old one can still be drawn while the next takes its place.
  struct Drawn {
    ToastContent content;
    ToastLayout layout;
  };

  void takeToast();
  void takeShown(bool animated);
  void animate(QVariantAnimation& animation, double from, double to);
  void place();
  void setHovered(bool hovered);
  void runTicker();
  bool hasCountdown() const;
  struct ToastFrame frame() const;
  void paintContents(QPainter& painter, const Drawn& toast, double opacity);

  ToastController& controller_;
  ToastModel& model_;
  const PanelWindow& native_;
  Clock& clock_;
  ToastMotion motion_ = ToastMotion::none;
  bool translucent_ = true;
  Drawn current_;
  std::optional<Drawn> previous_;
  /// 0 away, 1 in place.
  QVariantAnimation presence_;
  /// 0 the previous toast, 1 the current one.
  QVariantAnimation morph_;
  QBasicTimer ticker_;
  QAbstractButton* close_;
  bool hovered_ = false;
  bool pressed_ = false;
};
