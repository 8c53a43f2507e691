#include "core/ui/toast/toast_panel.h"

#include <QScreen>
#include <QWindow>

#include <cmath>

#include "core/ui/card_frame.h"
#include "core/ui/palette_panel.h"
#include "core/ui/theme.h"
#include "core/ui/toast/toast_view.h"

namespace {

/// How far the transparent panel reaches over the visible frame's upper edge.
constexpr int kOverlap = 4;

}  // namespace

ToastPanel::ToastPanel(ToastController& controller, PanelWindow& native, const SystemInfo& system, Clock& clock)
    : QWidget(nullptr, native.windowFlags(PanelKind::toast)),
      native_(native),
      system_(system),
      model_(controller.model()),
      view_(new ToastView(controller, native, clock)) {
  setAttribute(Qt::WA_TranslucentBackground);
  setAttribute(Qt::WA_ShowWithoutActivating);
  setAttribute(Qt::WA_X11DoNotAcceptFocus);
  setAttribute(Qt::WA_MacAlwaysShowToolWindow);
  setFixedSize(kSize);
  view_->setParent(this);
  view_->setGeometry(rect());
  connect(view_, &ToastView::cardMoved, this, &ToastPanel::shape);
}

void ToastPanel::place() {
  const QScreen* screen = activeScreen();
  if (!screen) return;
  const QRectF available = screen->availableGeometry();
  const double x = available.left() + available.width() * 0.5 - kSize.width() * 0.5;
  move(static_cast<int>(std::lround(x)), static_cast<int>(available.top()) - kOverlap);
}

void ToastPanel::orderFront() {
  translucent_ = native_.isTranslucencyAvailable();
  const bool moves = translucent_ && !system_.isMotionReduced();
  view_->setLook(moves ? ToastMotion::full : ToastMotion::none, translucent_);
  place();
  winId();
  native_.prepare(*windowHandle(), PanelKind::toast);
  show();
  raise();
  inputRegion_ = rect();
  shape();
}

void ToastPanel::shape() {
  const QRect card = view_->cardRect();
  if (!translucent_) {
    // A mask beside the window hides all of it; an empty one would show all of it.
    const QRegion nothing(-2, -2, 1, 1);
    setMask(model_.isShown() ? roundedRegion(card, Theme::kCardRadius) : nothing);
    return;
  }
  clearMask();
  const QRegion region = model_.isShown() ? QRegion(card) : QRegion();
  if (!windowHandle() || region == inputRegion_) return;
  inputRegion_ = region;
  native_.setInputRegion(*windowHandle(), region);
}
