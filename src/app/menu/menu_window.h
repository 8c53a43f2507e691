#pragma once

#include <functional>

#include "app/menu/menu_panel.h"
#include "core/ui/palette_panel.h"

class MenuController;
class MenuView;

/// The menu's panel on the screen: placed beside the tray icon, as high as its rows. Keys, clicks and the loss of the
/// keyboard go to the controller.
class MenuWindow final : public QObject, public MenuPanel {
  Q_OBJECT

 public:
  /// Where the tray icon is; empty where the tray does not tell.
  using IconGeometry = std::function<QRect()>;

  MenuWindow(MenuController& controller, PanelWindow& native, IconGeometry iconGeometry);

  void present() override;
  void dismiss() override { panel_.dismiss(); }

  PalettePanel& panel() { return panel_; }

 private:
  void place();

  IconGeometry iconGeometry_;
  PalettePanel panel_;
  MenuView* view_;
  /// Where icon and pointer were when the menu was opened: it stays there while it shrinks and grows.
  QRect icon_;
  QPoint pointer_;
};
