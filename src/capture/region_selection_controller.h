#pragma once

#include <QImage>
#include <QPointer>
#include <QScreen>

#include <memory>
#include <vector>

#include "base/job.h"
#include "capture/region_selector.h"
#include "capture/screen_capturer.h"
#include "capture/selection_overlay.h"
#include "core/presenters/toast_presenter.h"

/// Covers every screen with an overlay, lets the user drag a rectangle on one of them, and captures it. Main thread
/// only.
///
/// Where the system can leave our overlays out of the picture, the screen is captured when the mouse is released.
/// Elsewhere the screens are grabbed before the overlays show, which then show these pictures: what the user sees while
/// dragging is what comes out, whatever happens behind, and no overlay can be in it. A running selection ends when
/// screens come, go or change. What is under way when the controller is destroyed is not completed.
class RegionSelectionController final : public RegionSelector {
 public:
  RegionSelectionController(ScreenGrabber& grabber, ToastPresenter& toasts, SelectionOverlay::Make makeOverlay);

  void begin(const QString& label, const QString& icon, Completion completion) override;
  bool hasUserTurnedAway() const override { return hasLostKeyboard_ || isSelecting(); }
  bool isSelecting() const { return run_.isRunning(); }

 private:
  struct Panel {
    QPointer<QScreen> screen;
    QImage picture;
    std::unique_ptr<SelectionOverlay> overlay;
  };
  struct Prompt {
    QString label;
    QString icon;
    Completion completion;
  };

  void endWhenScreensChange();
  void start();
  void takePictures();
  void keepPicture(Panel& panel, std::expected<QImage, ScreenCaptureError> picture);
  void showPanels();
  void select(std::size_t index, const QRectF& globalRect);
  void cancel();
  void loseKeyboard();
  void capture(const Panel& panel, const QRectF& globalRect, const ScreenCapturer::WindowIDs& ownWindows,
               Completion completion);
  /// The selection is over: its completion, which has to be called, and its panels, which are off the screen.
  Completion finish();
  ScreenCapturer::WindowIDs windowIDs() const;

  ScreenGrabber& grabber_;
  ToastPresenter& toasts_;
  SelectionOverlay::Make makeOverlay_;
  ScreenCapturer capturer_;
  Prompt prompt_;
  /// Whether that ended the latest selection.
  bool hasLostKeyboard_ = false;
  /// One a screen, in the system's order.
  std::vector<Panel> panels_;
  /// Panels of the selection before, kept until the event that ended it is over.
  std::vector<Panel> formerPanels_;
  /// The selection, until its panels are gone.
  Job run_;
  /// What outlives a selection: a new one does not end the capture of the one before.
  Job captures_ = Job::start();
};
