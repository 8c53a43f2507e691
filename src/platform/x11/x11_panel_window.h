#pragma once

#include <xcb/xcb.h>

#include <QAbstractNativeEventFilter>
#include <QPointer>
#include <QWindow>

#include <chrono>
#include <memory>
#include <vector>

#include "base/job.h"
#include "platform/panel_window.h"
#include "platform/x11/x11_session.h"
#include "platform/x11/xwayland_panels.h"

class X11PanelTraces;
class X11RawInput;

/// Panels that the window manager does not manage: the active window never changes, the keyboard is grabbed for the
/// panel instead. A click elsewhere is seen at the devices, since it goes to the window below the pointer as usual.
/// Under Wayland the compositor has its say too (`XWaylandPanels`).
class X11PanelWindow final : public PanelWindow, public QAbstractNativeEventFilter {
 public:
  X11PanelWindow(const X11Session& session, std::shared_ptr<X11RawInput> rawInput,
                 std::shared_ptr<X11PanelTraces> traces);

  Qt::WindowFlags windowFlags(PanelKind kind) const override;
  void prepare(QWindow& window, PanelKind kind) override;
  /// False when another program holds the keyboard right now; goes on trying for a second, after which it is lost.
  bool takeKeyboard(QWindow& window) override;
  void releaseKeyboard(QWindow& window) override;
  void watchKeyboardLoss(QWindow& window, const QRect& card, std::function<void()> lost) override;
  void stopWatching(QWindow& window) override;
  bool isTranslucencyAvailable() const override;
  bool isPointerPressed() const override;
  bool isScrollingInverted(ScrollSource source) const override;
  void setInputRegion(QWindow& window, const QRegion& region) override;

  /// Whether a panel has the keyboard, so that keys do not go to the active window.
  bool hasKeyboard() const { return holder_ && holder_->isVisible(); }

  bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

 private:
  struct Watch {
    QPointer<QWindow> window;
    QRect card;
    std::function<void()> lost;
    bool told = false;
  };

  bool grab();
  void keepTrying(std::chrono::milliseconds left);
  void seePointerPress();
  void tellLoss(const QWindow* window);
  void tell(const std::shared_ptr<Watch>& watch);

  X11Session session_;
  std::shared_ptr<X11RawInput> rawInput_;
  std::shared_ptr<X11PanelTraces> traces_;
  XWaylandPanels wayland_;
  xcb_atom_t compositorSelection_;
  /// The panel that has the keyboard, or is trying to get it.
  QPointer<QWindow> holder_;
  Job retry_;
  std::vector<std::shared_ptr<Watch>> watches_;
};
