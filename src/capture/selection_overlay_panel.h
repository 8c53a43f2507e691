#pragma once

#include <QWidget>

#include "capture/selection_overlay.h"
#include "platform/panel_window.h"
#include "platform/system_info.h"

class SelectionView;

/// Covers one screen, above everything, while a rectangle is picked; takes the keyboard for Escape without becoming the
/// active window.
class SelectionOverlayPanel final : public QWidget, public SelectionOverlay {
  Q_OBJECT

 public:
  SelectionOverlayPanel(Request request, PanelWindow& native, const SystemInfo& system);

  void orderFront() override;
  void orderOut() override;
  void makeKey() override;
  QWindow* nativeWindow() const override { return windowHandle(); }

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void watchKeyboard();
  void keyboardLost();

  PanelWindow& native_;
  QScreen& screen_;
  std::function<void()> onCancel_;
  std::function<void()> onKeyboardLost_;
  SelectionView* view_;
};
