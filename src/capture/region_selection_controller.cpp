#include "capture/region_selection_controller.h"

#include <QCursor>
#include <QGuiApplication>

#include <algorithm>
#include <utility>

#include "base/logging.h"
#include "capture/selection_geometry.h"

namespace {

void logFailure(const ScreenCaptureError& error) {
  qCWarning(lcCapture).noquote() << "ScreenCapture failed:" << error.description();
}

const QScreen* screenUnderPointer() {
  const QScreen* screen = QGuiApplication::screenAt(QCursor::pos());
  return screen ? screen : QGuiApplication::primaryScreen();
}

}  // namespace

RegionSelectionController::RegionSelectionController(ScreenGrabber& grabber, ToastPresenter& toasts,
                                                     SelectionOverlay::Make makeOverlay)
    : grabber_(grabber), toasts_(toasts), makeOverlay_(std::move(makeOverlay)), capturer_(grabber) {}

void RegionSelectionController::begin(const QString& label, const QString& icon, Completion completion) {
  // Later, since it may begin anew.
  if (isSelecting()) JobRef(captures_).later([replaced = finish()] { replaced(std::nullopt); });
  run_ = Job::start();
  hasLostKeyboard_ = false;
  prompt_ = {label, icon, std::move(completion)};
  toasts_.dismiss(false);
  JobRef(run_).later([this] { start(); });
}

void RegionSelectionController::start() {
  for (QScreen* screen : QGuiApplication::screens()) panels_.push_back({screen, {}, nullptr});
  if (panels_.empty()) return cancel();
  endWhenScreensChange();
  grabber_.leavesWindowsOut() ? showPanels() : takePictures();
}

void RegionSelectionController::endWhenScreensChange() {
  run_.on(qGuiApp, &QGuiApplication::screenAdded, [this](QScreen*) { cancel(); });
  run_.on(qGuiApp, &QGuiApplication::screenRemoved, [this](QScreen*) { cancel(); });
  for (const Panel& panel : panels_)
    run_.on(panel.screen.get(), &QScreen::geometryChanged, [this](const QRect&) { cancel(); });
}

void RegionSelectionController::takePictures() {
  for (Panel& panel : panels_)
    capturer_.takePicture(*panel.screen, run_,
                          [this, &panel](auto picture) { keepPicture(panel, std::move(picture)); });
}

void RegionSelectionController::keepPicture(Panel& panel, std::expected<QImage, ScreenCaptureError> picture) {
  if (!picture) {
    logFailure(picture.error());
    return cancel();
  }
  panel.picture = std::move(*picture);
  if (std::ranges::none_of(panels_, [](const Panel& each) { return each.picture.isNull(); })) showPanels();
}

void RegionSelectionController::showPanels() {
  const QScreen* const active = screenUnderPointer();
  for (std::size_t index = 0; index < panels_.size(); ++index) {
    Panel& panel = panels_[index];
    panel.overlay = makeOverlay_({.screen = *panel.screen,
                                  .label = prompt_.label,
                                  .icon = prompt_.icon,
                                  .picture = panel.picture,
                                  .onSelect = [this, index](const QRectF& rect) { select(index, rect); },
                                  .onCancel = [this] { cancel(); },
                                  .onKeyboardLost = [this] { loseKeyboard(); }});
    panel.overlay->orderFront();
  }
  const auto key = std::ranges::find(panels_, active, [](const Panel& panel) { return panel.screen.get(); });
  (key == panels_.end() ? panels_.front() : *key).overlay->makeKey();
}

void RegionSelectionController::select(std::size_t index, const QRectF& globalRect) {
  if (!isSelecting()) return;
  const ScreenCapturer::WindowIDs ownWindows = windowIDs();
  Completion completion = finish();
  if (!isLargeEnough(globalRect.size())) return completion(std::nullopt);
  capture(formerPanels_[index], globalRect, ownWindows, std::move(completion));
}

void RegionSelectionController::cancel() {
  if (isSelecting()) finish()(std::nullopt);
}

/// Later, since the window that took the keyboard is about to show.
void RegionSelectionController::loseKeyboard() {
  if (!isSelecting()) return;
  hasLostKeyboard_ = true;
  JobRef(captures_).later([ended = finish()] { ended(std::nullopt); });
}

void RegionSelectionController::capture(const Panel& panel, const QRectF& globalRect,
                                        const ScreenCapturer::WindowIDs& ownWindows, Completion completion) {
  const auto done = [completion = std::move(completion)](std::expected<QByteArray, ScreenCaptureError> png) {
    if (png) return completion(std::move(*png));
    logFailure(png.error());
    completion(std::nullopt);
  };
  if (panel.picture.isNull())
    capturer_.capturePNG(globalRect, *panel.screen, ownWindows, captures_, done);
  else
    capturer_.cutPNG(panel.picture, globalRect, *panel.screen, captures_, done);
}

RegionSelector::Completion RegionSelectionController::finish() {
  run_.cancel();
  for (const Panel& panel : panels_)
    if (panel.overlay) panel.overlay->orderOut();
  formerPanels_ = std::exchange(panels_, {});
  JobRef(captures_).later([this] { formerPanels_.clear(); });
  return std::exchange(prompt_, {}).completion;
}

ScreenCapturer::WindowIDs RegionSelectionController::windowIDs() const {
  ScreenCapturer::WindowIDs ids;
  for (const Panel& panel : panels_)
    if (QWindow* window = panel.overlay ? panel.overlay->nativeWindow() : nullptr)
      ids.push_back(grabber_.windowID(*window));
  return ids;
}
