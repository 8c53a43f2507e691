#include "platform/x11/x11_panel_window.h"

#include <xcb/shape.h>

#include <QCursor>
#include <QGuiApplication>
#include <QTimer>

#include <algorithm>

#include "base/logging.h"
#include "platform/x11/x11_panel_traces.h"
#include "platform/x11/x11_raw_input.h"
#include "platform/x11/x11_scrolling.h"
#include "platform/x11/xcb_reply.h"

using namespace std::chrono_literals;

namespace {

/// Other programs hold the keyboard for the time of a key press or while a menu is open.
constexpr auto kPatience = 1000ms;
constexpr auto kRetryInterval = 10ms;

constexpr std::uint32_t kPointerPresses =
    XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_TOUCH_BEGIN;

bool isPointerPress(const X11RawInput::Event& event) {
  // Buttons 4 to 7 are the steps of wheels.
  const bool isWheel = event.detail >= XCB_BUTTON_INDEX_4 && event.detail <= 7;
  return event.type == XCB_INPUT_RAW_TOUCH_BEGIN || (event.type == XCB_INPUT_RAW_BUTTON_PRESS && !isWheel);
}

/// Menus of the panel stand outside its card but belong to it.
bool isInOwnPopup(QPoint position) {
  return std::ranges::any_of(QGuiApplication::topLevelWindows(), [position](const QWindow* window) {
    return window->type() == Qt::Popup && window->isVisible() && window->geometry().contains(position);
  });
}

}  // namespace

X11PanelWindow::X11PanelWindow(const X11Session& session, std::shared_ptr<X11RawInput> rawInput,
                               std::shared_ptr<X11PanelTraces> traces)
    : session_(session),
      rawInput_(std::move(rawInput)),
      traces_(std::move(traces)),
      wayland_(session),
      compositorSelection_(internAtom(session, "_NET_WM_CM_S0")) {
  QCoreApplication::instance()->installNativeEventFilter(this);
}

Qt::WindowFlags X11PanelWindow::windowFlags(PanelKind kind) const {
  if (wayland_.isManaged(kind)) return Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint;
  return Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::BypassWindowManagerHint;
}

/// Nobody restacks an unmanaged window: it would come back below all that was opened since.
void X11PanelWindow::prepare(QWindow& window, PanelKind kind) {
  wayland_.announce(window, kind);
  traces_->follow(window);
  window.raise();
}

bool X11PanelWindow::takeKeyboard(QWindow& window) {
  const QWindow* previous = holder_ == &window ? nullptr : holder_.get();
  holder_ = &window;
  if (previous != nullptr) tellLoss(previous);
  retry_.cancel();
  wayland_.activate(window);
  if (grab()) return true;
  keepTrying(kPatience);
  return false;
}

void X11PanelWindow::releaseKeyboard(QWindow& window) {
  if (holder_ != &window) return;
  holder_ = nullptr;
  retry_.cancel();
  // Waits for the server, so that keys synthesized on another connection find the user's window.
  const auto cookie = xcb_ungrab_keyboard_checked(session_.connection, XCB_CURRENT_TIME);
  const XcbReply<xcb_generic_error_t> error(xcb_request_check(session_.connection, cookie));
}

void X11PanelWindow::watchKeyboardLoss(QWindow& window, const QRect& card, std::function<void()> lost) {
  stopWatching(window);
  watches_.push_back(std::make_shared<Watch>(Watch{&window, card, std::move(lost)}));
  rawInput_->select(kPointerPresses, true);
}

void X11PanelWindow::stopWatching(QWindow& window) {
  std::erase_if(watches_, [&window](const auto& watch) { return !watch->window || watch->window == &window; });
  if (watches_.empty()) rawInput_->select(kPointerPresses, false);
}

bool X11PanelWindow::isTranslucencyAvailable() const {
  return selectionOwner(session_, compositorSelection_) != XCB_WINDOW_NONE;
}

bool X11PanelWindow::isPointerPressed() const {
  constexpr std::uint16_t kButtons = XCB_BUTTON_MASK_1 | XCB_BUTTON_MASK_2 | XCB_BUTTON_MASK_3;
  const auto cookie = xcb_query_pointer(session_.connection, session_.root);
  const XcbReply<xcb_query_pointer_reply_t> reply(xcb_query_pointer_reply(session_.connection, cookie, nullptr));
  return reply && (reply->mask & kButtons) != 0;
}

bool X11PanelWindow::isScrollingInverted(ScrollSource source) const {
  return isNaturalScrollingEnabled(session_, source);
}

void X11PanelWindow::setInputRegion(QWindow& window, const QRegion& region) {
  const double ratio = window.devicePixelRatio();
  std::vector<xcb_rectangle_t> rectangles;
  for (const QRect& rect : region) {
    const QRect pixels = QRectF(QPointF(rect.topLeft()) * ratio, QSizeF(rect.size()) * ratio).toAlignedRect();
    rectangles.push_back({static_cast<std::int16_t>(pixels.x()), static_cast<std::int16_t>(pixels.y()),
                          static_cast<std::uint16_t>(pixels.width()), static_cast<std::uint16_t>(pixels.height())});
  }
  xcb_shape_rectangles(session_.connection, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, XCB_CLIP_ORDERING_UNSORTED,
                       static_cast<xcb_window_t>(window.winId()), 0, 0, static_cast<std::uint32_t>(rectangles.size()),
                       rectangles.data());
  xcb_flush(session_.connection);
}

bool X11PanelWindow::nativeEventFilter(const QByteArray&, void* message, qintptr*) {
  const auto& event = *static_cast<const xcb_generic_event_t*>(message);
  if (const auto raw = rawInput_->read(event); raw && isPointerPress(*raw)) seePointerPress();
  if (holder_ && wayland_.isFocusLoss(event, *holder_)) tellLoss(holder_);
  const bool isFocusOut = event.response_type == XCB_FOCUS_OUT;
  // A menu of ours takes the grab over and ends it when it closes.
  if (isFocusOut && reinterpret_cast<const xcb_focus_out_event_t&>(event).mode == XCB_NOTIFY_MODE_UNGRAB && holder_)
    keepTrying(kPatience);
  return false;
}

bool X11PanelWindow::grab() {
  const auto cookie = xcb_grab_keyboard(session_.connection, false, static_cast<xcb_window_t>(holder_->winId()),
                                        XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
  const XcbReply<xcb_grab_keyboard_reply_t> reply(xcb_grab_keyboard_reply(session_.connection, cookie, nullptr));
  return reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
}

void X11PanelWindow::keepTrying(std::chrono::milliseconds left) {
  retry_ = Job::start();
  QTimer::singleShot(kRetryInterval, retry_.scope(), retry_.bind([this, left] {
    if (!holder_ || !holder_->isVisible() || grab()) return;
    if (left > kRetryInterval) return keepTrying(left - kRetryInterval);
    qCDebug(lcPlatform) << "another program keeps the keyboard";
    tellLoss(holder_);
  }));
}

void X11PanelWindow::seePointerPress() {
  const QPoint position = QCursor::pos();
  if (isInOwnPopup(position)) return;
  for (const auto& watch : watches_)
    if (watch->window && !watch->card.contains(watch->window->mapFromGlobal(position))) tell(watch);
}

void X11PanelWindow::tellLoss(const QWindow* window) {
  const auto found = std::ranges::find_if(watches_, [window](const auto& watch) { return watch->window == window; });
  if (found != watches_.end()) tell(*found);
}

/// From the event loop: who is told hides windows, and may have stopped watching by then.
void X11PanelWindow::tell(const std::shared_ptr<Watch>& watch) {
  if (!watch->window || std::exchange(watch->told, true)) return;
  const auto deliver = [weak = std::weak_ptr(watch)] {
    if (const auto pending = weak.lock()) pending->lost();
  };
  QMetaObject::invokeMethod(watch->window, deliver, Qt::QueuedConnection);
}
