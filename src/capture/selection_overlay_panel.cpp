#include "capture/selection_overlay_panel.h"

#include <QApplication>
#include <QCursor>
#include <QKeyEvent>
#include <QScreen>
#include <QWindow>

#include "capture/selection_view.h"
#include "core/ui/key_event.h"

SelectionOverlayPanel::SelectionOverlayPanel(Request request, PanelWindow& native, const SystemInfo& system)
    : QWidget(nullptr, native.windowFlags(PanelKind::overlay)),
      native_(native),
      screen_(request.screen),
      onCancel_(std::move(request.onCancel)),
      onKeyboardLost_(std::move(request.onKeyboardLost)),
      view_(new SelectionView({.label = request.label,
                               .icon = request.icon,
                               .picture = request.picture,
                               .animated = !system.isMotionReduced()},
                              this)) {
  setAccessibleName(request.label);
  setAccessibleDescription(QStringLiteral("Drag a rectangle; Escape cancels"));
  setAttribute(request.picture.isNull() ? Qt::WA_TranslucentBackground : Qt::WA_OpaquePaintEvent);
  setAttribute(Qt::WA_ShowWithoutActivating);
  setAttribute(Qt::WA_MacAlwaysShowToolWindow);
  setScreen(&screen_);
  setGeometry(screen_.geometry());
  view_->setGeometry(rect());
  connect(view_, &SelectionView::cancelled, this, [this] { onCancel_(); });
  connect(view_, &SelectionView::selected, this, [this, onSelect = std::move(request.onSelect)](const QRectF& rect) {
    onSelect(rect.translated(screen_.geometry().topLeft()));
  });
}

void SelectionOverlayPanel::orderFront() {
  winId();
  native_.prepare(*windowHandle(), PanelKind::overlay);
  show();
  raise();
  const QPoint pointer = QCursor::pos();
  if (screen_.geometry().contains(pointer)) view_->followPointer(pointer - screen_.geometry().topLeft());
}

void SelectionOverlayPanel::orderOut() {
  if (!windowHandle()) return;
  native_.stopWatching(*windowHandle());
  native_.releaseKeyboard(*windowHandle());
  hide();
}

void SelectionOverlayPanel::makeKey() {
  native_.takeKeyboard(*windowHandle());
  watchKeyboard();
}

void SelectionOverlayPanel::watchKeyboard() {
  // A click on the overlay of another screen is none beside this one.
  constexpr QRect kEverywhere(-1'000'000, -1'000'000, 2'000'000, 2'000'000);
  native_.watchKeyboardLoss(*windowHandle(), kEverywhere, [this] { keyboardLost(); });
}

/// It may have gone to the overlay of another screen.
void SelectionOverlayPanel::keyboardLost() {
  auto* other = qobject_cast<SelectionOverlayPanel*>(QApplication::activeWindow());
  if (!other || other == this) return onKeyboardLost_();
  other->watchKeyboard();
}

void SelectionOverlayPanel::keyPressEvent(QKeyEvent* event) {
  if (keyPress(*event).keyCode == keycode::kEscape) return onCancel_();
  event->ignore();
}
