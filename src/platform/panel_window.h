#pragma once

#include <qnamespace.h>
#include <QRect>
#include <QRegion>

#include <functional>

class QWindow;

enum class PanelKind {
  /// Takes the keyboard while the user's own application stays the active one.
  palette,
  /// Never takes the keyboard; stands above everything, full-screen applications included.
  toast,
  /// Covers a whole screen, whatever is there, and takes the keyboard as a palette does.
  overlay,
};

/// What scrolls: each has a direction of its own in the user's settings.
enum class ScrollSource { wheel, touchpad };

/// The native side of panels. The same calls are made at every show; main thread only.
class PanelWindow {
 public:
  virtual ~PanelWindow() = default;

  /// The flags the widget is created with.
  virtual Qt::WindowFlags windowFlags(PanelKind kind) const = 0;
  /// Level, spaces and activation; called right before each show, when the native window exists.
  virtual void prepare(QWindow& window, PanelKind kind) = 0;
  /// Directs the keyboard to the shown window without activating the application; false when another program holds it.
  virtual bool takeKeyboard(QWindow& window) = 0;
  virtual void releaseKeyboard(QWindow& window) = 0;
  /// Calls `lost`, at most once, when the user presses a mouse button outside `card` (in window coordinates) or the
  /// window loses the keyboard otherwise.
  virtual void watchKeyboardLoss(QWindow& window, const QRect& card, std::function<void()> lost) = 0;
  virtual void stopWatching(QWindow& window) = 0;
  /// Whether a button of the pointer is held down, in whichever window.
  virtual bool isPointerPressed() const { return false; }
  /// Whether the user has turned the direction of scrolling round ("natural" scrolling), for systems whose scroll
  /// events do not say so themselves.
  virtual bool isScrollingInverted(ScrollSource source) const {
    Q_UNUSED(source)
    return false;
  }
  /// Where the window takes clicks (window coordinates); the rest lets them through to what is behind. Nothing to do
  /// where the system lets clicks through transparent pixels by itself.
  virtual void setInputRegion(QWindow& window, const QRegion& region) {
    Q_UNUSED(window)
    Q_UNUSED(region)
  }
  /// Whether transparent parts of a window show what is behind; without it panels are cut to their card.
  virtual bool isTranslucencyAvailable() const = 0;
};
