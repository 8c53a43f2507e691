#pragma once

#include <QImage>
#include <QRectF>
#include <QString>

#include <functional>
#include <memory>

class QScreen;
class QWindow;

/// What covers one screen during a selection, as the controller needs it. Main thread only.
class SelectionOverlay {
 public:
  struct Request {
    QScreen& screen;
    QString label;
    QString icon;
    /// The screen in native pixels, to be shown in place of what is behind; null: the overlay lets it show through.
    QImage picture;
    /// Called with a rectangle in global logical coordinates, wider and taller than 4.
    std::function<void(const QRectF& globalRect)> onSelect;
    std::function<void()> onCancel;
    /// Without the keyboard nobody could get rid of the overlay by a key.
    std::function<void()> onKeyboardLost{};
  };
  using Make = std::function<std::unique_ptr<SelectionOverlay>(Request)>;

  virtual ~SelectionOverlay() = default;

  virtual void orderFront() = 0;
  virtual void orderOut() = 0;
  /// Directs the keyboard here, so that Escape cancels whichever screen the pointer is on.
  virtual void makeKey() = 0;
  /// Null until it has been ordered front.
  virtual QWindow* nativeWindow() const = 0;
};
