#include "core/ui/toast/toast_view.h"

#include <QAbstractButton>
#include <QAccessibleWidget>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <utility>

#include "core/ui/card_frame.h"
#include "core/ui/icon.h"
#include "core/ui/theme.h"
#include "core/ui/toast/toast_painter.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// From the panel's top edge, which stands 4 points above the visible frame, to the card at rest.
constexpr int kTopMargin = 16;
constexpr int kSlideDistance = 20;
constexpr auto kMotion = 180ms;
/// Longer toasts stand there for as long as work takes; a ring would hardly move.
constexpr auto kLongestCountdown = 10s;
constexpr auto kSpinnerTurn = 900ms;

class CloseButton final : public QAbstractButton {
 public:
  explicit CloseButton(QWidget* parent) : QAbstractButton(parent) {
    setAccessibleName(u"Close"_s);
    setFocusPolicy(Qt::NoFocus);
    setCursor(Qt::PointingHandCursor);
    hide();
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    const Theme& theme = themeOf(*this);
    QPainter painter(this);
    paintSymbol(painter, u"xmark.circle.fill"_s, rect(), underMouse() ? theme.text : theme.secondary);
  }
  void enterEvent(QEnterEvent*) override { update(); }
  void leaveEvent(QEvent*) override { update(); }
};

/// Screen readers announce a toast as an alert.
QAccessibleInterface* accessibleToast(const QString&, QObject* object) {
  auto* view = qobject_cast<ToastView*>(object);
  return view ? new QAccessibleWidget(view, QAccessible::AlertMessage) : nullptr;
}

/// A notch of a wheel counts 15 points, so that one alone dismisses nothing.
ScrollStep scrollStep(const QWheelEvent& event, const PanelWindow& native) {
  const int angle = event.angleDelta().y();
  const ScrollSource source =
      angle % QWheelEvent::DefaultDeltasPerStep == 0 ? ScrollSource::wheel : ScrollSource::touchpad;
  const bool isGesture = event.phase() != Qt::NoScrollPhase && !event.pixelDelta().isNull();
  return {.deltaY = isGesture ? event.pixelDelta().y() : angle / 8.0,
          .inverted = event.inverted() || native.isScrollingInverted(source),
          .begins = event.phase() == Qt::ScrollBegin};
}

}  // namespace

ToastView::ToastView(ToastController& controller, const PanelWindow& native, Clock& clock)
    : controller_(controller),
      model_(controller.model()),
      native_(native),
      clock_(clock),
      close_(new CloseButton(this)) {
  static const bool installed = (QAccessible::installFactory(accessibleToast), true);
  Q_UNUSED(installed)
  setMouseTracking(true);
  for (QVariantAnimation* animation : {&presence_, &morph_}) {
    animation->setStartValue(0.0);
    animation->setEndValue(0.0);
    connect(animation, &QVariantAnimation::valueChanged, this, &ToastView::place);
  }
  connect(&model_, &ToastModel::toastChanged, this, &ToastView::takeToast);
  connect(&model_, &ToastModel::shownChanged, this, &ToastView::takeShown);
  connect(close_, &QAbstractButton::clicked, this, [this] { controller_.dismiss(true); });
}

void ToastView::setLook(ToastMotion motion, bool translucent) {
  motion_ = motion;
  translucent_ = translucent;
}

QRect ToastView::cardRect() const {
  const double morph = previous_ ? morph_.currentValue().toDouble() : 1;
  const QSizeF from = previous_ ? previous_->layout.card : current_.layout.card;
  const QSizeF size = from + (QSizeF(current_.layout.card) - from) * morph;
  const double slide = (1 - presence_.currentValue().toDouble()) * kSlideDistance;
  // Whole pixels of even width keep text and edges sharp at rest.
  const int cardWidth = 2 * static_cast<int>(std::lround(size.width() / 2));
  return QRect((width() - cardWidth) / 2, static_cast<int>(std::lround(kTopMargin - slide)), cardWidth,
               static_cast<int>(std::lround(size.height())));
}

void ToastView::takeToast() {
  if (model_.isShown() && motion_ == ToastMotion::full) {
    previous_ = std::move(current_);
    animate(morph_, 0, 1);
  } else {
    previous_.reset();
  }
  current_ = {model_.content(), ToastLayout::of(model_.content())};
  const QStringList parts = {current_.content.title, current_.content.detail};
  setAccessibleName(parts.join(parts.last().isEmpty() ? u""_s : u". "_s));
  setCursor(current_.content.onTap ? Qt::PointingHandCursor : Qt::ArrowCursor);
  runTicker();
  place();
  QAccessibleEvent alert(this, QAccessible::Alert);
  QAccessible::updateAccessibility(&alert);
}

void ToastView::takeShown(bool animated) {
  const double now = presence_.currentValue().toDouble();
  const double goal = model_.isShown() ? 1 : 0;
  animate(presence_, animated && motion_ == ToastMotion::full ? now : goal, goal);
  runTicker();
}

void ToastView::animate(QVariantAnimation& animation, double from, double to) {
  animation.stop();
  animation.setStartValue(from);
  animation.setEndValue(to);
  animation.setDuration(from == to ? 0 : static_cast<int>(kMotion.count()));
  animation.setEasingCurve(to > from ? QEasingCurve::OutCubic : QEasingCurve::InCubic);
  animation.setCurrentTime(0);
  animation.start();
  place();
}

void ToastView::place() {
  const QRect card = cardRect();
  close_->setGeometry(QRect(card.right() + 1 - (current_.layout.card.width() - current_.layout.trailing.left()),
                            card.top() + current_.layout.trailing.top(), current_.layout.trailing.width(),
                            current_.layout.trailing.height()));
  Q_EMIT cardMoved();
  update();
}

bool ToastView::hasCountdown() const { return model_.duration() <= kLongestCountdown; }

void ToastView::runTicker() {
  const bool spins = current_.content.showsSpinner && motion_ == ToastMotion::full;
  if (!model_.isShown() || !(spins || hasCountdown())) {
    ticker_.stop();
    return;
  }
  const auto drains = motion_ == ToastMotion::full ? 66ms : 1000ms;
  ticker_.start(static_cast<int>((spins ? 33ms : drains).count()), this);
}

void ToastView::timerEvent(QTimerEvent*) { update(cardRect()); }

ToastFrame ToastView::frame() const {
  const auto elapsed = clock_.monotonic() - model_.startDate();
  const std::chrono::duration<double> seconds = elapsed;
  ToastFrame frame;
  if (hasCountdown() && !hovered_) frame.remaining = std::clamp(1 - seconds / model_.duration(), 0.0, 1.0);
  if (motion_ == ToastMotion::full) frame.turn = seconds / kSpinnerTurn - std::floor(seconds / kSpinnerTurn);
  return frame;
}

void ToastView::paintContents(QPainter& painter, const Drawn& toast, double opacity) {
  painter.save();
  painter.setOpacity(painter.opacity() * opacity);
  paintToast(painter, toast.content, toast.layout, frame(), themeOf(*this));
  painter.restore();
}

void ToastView::paintEvent(QPaintEvent*) {
  const double presence = presence_.currentValue().toDouble();
  if (presence == 0) return;
  QPainter painter(this);
  painter.setOpacity(translucent_ ? presence : 1);
  const QRect card = cardRect();
  paintCard(painter, card, themeOf(*this), translucent_);
  QPainterPath shape;
  shape.addRoundedRect(card, Theme::kCardRadius, Theme::kCardRadius);
  painter.setClipPath(shape);
  painter.translate(card.topLeft());
  const double morph = previous_ ? morph_.currentValue().toDouble() : 1;
  // The old contents are gone half-way, so that the two never stand on each other.
  if (morph < 0.5) paintContents(painter, *previous_, 1 - 2 * morph);
  paintContents(painter, current_, morph < 0.5 ? 0 : 2 * morph - 1);
}

void ToastView::wheelEvent(QWheelEvent* event) {
  event->setAccepted(controller_.scrolled(scrollStep(*event, native_)));
}

void ToastView::mousePressEvent(QMouseEvent* event) {
  pressed_ = event->button() == Qt::LeftButton && cardRect().contains(event->position().toPoint());
}

void ToastView::mouseReleaseEvent(QMouseEvent* event) {
  const bool clicked = std::exchange(pressed_, false) && cardRect().contains(event->position().toPoint());
  if (clicked) controller_.tapped();
}

void ToastView::mouseMoveEvent(QMouseEvent* event) { setHovered(cardRect().contains(event->position().toPoint())); }

void ToastView::leaveEvent(QEvent*) { setHovered(false); }

void ToastView::setHovered(bool hovered) {
  if (hovered == hovered_) return;
  hovered_ = hovered;
  close_->setVisible(hovered);
  update();
}
