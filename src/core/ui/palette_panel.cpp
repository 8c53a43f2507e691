#include "core/ui/palette_panel.h"

#include <QApplication>
#include <QCursor>
#include <QKeyEvent>
#include <QScreen>
#include <QTimer>
#include <QWindow>

#include <cmath>
#include <utility>

#include "core/ui/accessible_roles.h"
#include "core/ui/card_frame.h"
#include "core/ui/key_event.h"
#include "core/ui/panel_position.h"
#include "core/ui/search_field.h"
#include "core/ui/theme.h"

using namespace std::chrono_literals;

namespace {

constexpr auto kReleaseInterval = 30ms;
constexpr auto kDropDelay = 150ms;

/// Qt forgets only after a tenth of a second that a hidden window had the keyboard. Shown again before, it would not
/// tell the widgets that it has it once more: no caret, no input method.
void rememberActivation(QWidget& window) {
  if (QGuiApplication::focusWindow() != window.windowHandle() || window.isActiveWindow()) return;
  QT_WARNING_PUSH
  QT_WARNING_DISABLE_DEPRECATED
  QApplication::setActiveWindow(&window);
  QT_WARNING_POP
}

}  // namespace

QScreen* activeScreen() {
  const QPoint pointer = QCursor::pos();
  for (QScreen* screen : QGuiApplication::screens())
    if (screen->geometry().contains(pointer)) return screen;
  return QGuiApplication::primaryScreen();
}

PalettePanel::PalettePanel(PanelWindow& native, QSize size, QWidget* parent)
    : QWidget(parent, native.windowFlags(PanelKind::palette)),
      native_(native),
      translucent_(native.isTranslucencyAvailable()),
      card_(new CardFrame(Theme::kPanelMargin, translucent_, this)) {
  setAccessibleRole(*this, QAccessible::Dialog);
  setAttribute(Qt::WA_TranslucentBackground);
  setAttribute(Qt::WA_ShowWithoutActivating);
  setAttribute(Qt::WA_InputMethodEnabled);
  setAttribute(Qt::WA_MacAlwaysShowToolWindow);
  setFocusPolicy(Qt::StrongFocus);
  resize(size);
}

PalettePanel::~PalettePanel() {
  if (isVisible()) dismiss();
}

void PalettePanel::setContent(QWidget* content) { card_->setContent(content); }

void PalettePanel::positionOnActiveScreen() {
  const QScreen* screen = activeScreen();
  if (!screen) return;
  // A little above the middle: the eye rests there, and results grow downwards.
  constexpr double kCentreFromTop = 1 - 0.62;
  const QRectF available = screen->availableGeometry();
  const double x = available.left() + available.width() * 0.5 - width() * 0.5;
  const double y = available.top() + available.height() * kCentreFromTop - height() * 0.5;
  move(static_cast<int>(std::lround(x)), static_cast<int>(std::lround(y)));
}

void PalettePanel::positionAt(const PanelPosition& remembered) {
  constexpr int kMargin = Theme::kPanelMargin;
  const QRect card = QRect(QPoint(), size()).adjusted(kMargin, kMargin, -kMargin, -kMargin);
  if (const auto origin = remembered.origin(card, screenGeometries()))
    move(*origin);
  else
    positionOnActiveScreen();
}

void PalettePanel::present() {
  winId();
  QWindow& window = *windowHandle();
  translucent_ = native_.isTranslucencyAvailable();
  card_->setTranslucent(translucent_);
  window.removeEventFilter(this);
  window.installEventFilter(this);
  native_.prepare(window, PanelKind::palette);
  // Before anybody can see it: a click elsewhere that comes as soon as it shows counts.
  watchForLoss();
  show();
  // At once: a key pressed by somebody who sees the panel must not reach the window behind it.
  native_.takeKeyboard(window);
  rememberActivation(*this);
  raise();
  if (!focusWidget()) setFocus();
  cutToCard();
  Q_EMIT becameKey();
}

void PalettePanel::takeKeyboard() {
  if (!isVisible() || watching_) return;
  native_.takeKeyboard(*windowHandle());
  watchForLoss();
  Q_EMIT becameKey();
}

void PalettePanel::warmUp() {
  winId();
  grab();
}

void PalettePanel::dismiss() {
  if (QWindow* window = windowHandle()) {
    native_.stopWatching(*window);
    native_.releaseKeyboard(*window);
  }
  watching_ = false;
  release_.cancel();
  grip_.reset();
  // An unfinished composition belongs to no later query.
  if (auto* field = findChild<SearchField*>()) field->setPreedit({});
  hide();
}

void PalettePanel::cutToCard() {
  if (!translucent_) return setMask(card_->cardRegion());
  clearMask();
  if (windowHandle()) native_.setInputRegion(*windowHandle(), card_->cardRect());
}

bool PalettePanel::offer(const KeyPress& press) {
  // A modifier going down is no key press of its own.
  const bool isNothing = press.keyCode == KeyPress::kUnknownKey && press.characters.isEmpty();
  if (isNothing) return false;
  const bool isMenuKey = press.shift && press.keyCode == keycode::kF10;
  return (handleKey_ && handleKey_(press)) || (isMenuKey && askForMenu());
}

/// As the system does at the menu key, which not every keyboard has.
bool PalettePanel::askForMenu() {
  QWidget* target = focusWidget() ? focusWidget() : this;
  const QPoint place = target->rect().center();
  QContextMenuEvent event(QContextMenuEvent::Keyboard, place, target->mapToGlobal(place));
  QApplication::sendEvent(target, &event);
  return event.isAccepted();
}

// Keys meant for a child pass here first: a palette's own keys work wherever the cursor stands.
bool PalettePanel::eventFilter(QObject* watched, QEvent* event) {
  if (staysUp_ && event->type() == QEvent::MouseButtonPress) takeKeyboard();
  const bool forChild =
      watched == windowHandle() && event->type() == QEvent::KeyPress && focusWidget() && focusWidget() != this;
  return (forChild && offer(keyPress(*static_cast<QKeyEvent*>(event)))) || QWidget::eventFilter(watched, event);
}

void PalettePanel::keyPressEvent(QKeyEvent* event) {
  if (!offer(keyPress(*event))) event->ignore();
}

void PalettePanel::inputMethodEvent(QInputMethodEvent* event) {
  if (auto* field = findChild<SearchField*>()) field->setPreedit(event->preeditString());
  if (!event->commitString().isEmpty()) offer(textPress(event->commitString()));
  event->accept();
}

QVariant PalettePanel::inputMethodQuery(Qt::InputMethodQuery query) const {
  const auto* field = findChild<SearchField*>();
  if (query != Qt::ImCursorRectangle || !field) return QWidget::inputMethodQuery(query);
  const QRect caret = field->caretRect();
  return QRect(field->mapTo(this, caret.topLeft()), caret.size());
}

void PalettePanel::mousePressEvent(QMouseEvent* event) {
  if (movable_ && event->button() == Qt::LeftButton) grip_ = Grip{event->position().toPoint()};
}

void PalettePanel::mouseMoveEvent(QMouseEvent* event) {
  if (!grip_) return;
  const QPoint way = event->globalPosition().toPoint() - mapToGlobal(grip_->point);
  // A click with an unsteady hand is no drag.
  if (!grip_->hasMoved && way.manhattanLength() < QApplication::startDragDistance()) return;
  grip_->hasMoved = true;
  move(pos() + way);
}

void PalettePanel::mouseReleaseEvent(QMouseEvent*) {
  const auto grip = std::exchange(grip_, std::nullopt);
  if (grip && grip->hasMoved) Q_EMIT moved(pos());
}

void PalettePanel::resizeEvent(QResizeEvent*) {
  card_->setGeometry(rect());
  cutToCard();
  // What was card before may be outside now.
  if (watching_) watchForLoss();
}

void PalettePanel::watchForLoss() {
  watching_ = true;
  native_.watchKeyboardLoss(*windowHandle(), card_->cardRect(), [this] {
    watching_ = false;
    loseKeyboard();
  });
}

void PalettePanel::loseKeyboard() {
  if (takesDrags_ && native_.isPointerPressed()) return awaitRelease();
  if (staysUp_) native_.releaseKeyboard(*windowHandle());
  Q_EMIT resignedKey();
}

/// A drop comes a moment after the button was let go, and takes the keyboard by then.
void PalettePanel::awaitRelease() {
  release_ = Job::start();
  auto* timer = new QTimer(release_.scope());
  connect(timer, &QTimer::timeout, this, [this] {
    if (native_.isPointerPressed()) return;
    release_ = Job::start();
    QTimer::singleShot(kDropDelay, release_.scope(), release_.bind([this] {
      if (isVisible() && !watching_) Q_EMIT resignedKey();
    }));
  });
  timer->start(kReleaseInterval);
}

bool PalettePanel::focusNextPrevChild(bool next) { return tabMovesFocus_ && QWidget::focusNextPrevChild(next); }
