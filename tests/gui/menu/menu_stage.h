#pragma once

#include "app/menu/menu_controller.h"
#include "app/menu/menu_list.h"
#include "app/menu/menu_view.h"
#include "app/menu/menu_window.h"
#include "support/world.h"

/// The menu with its real window over a given native side, at a tray icon of the test's choice.
struct MenuStage : ToolWorld {
  explicit MenuStage(PanelWindow& nativeSide) : native(nativeSide) {}

  PalettePanel& panel() const { return window->panel(); }
  MenuList& list() const { return *panel().findChild<MenuList*>(); }
  /// The card in global coordinates.
  QRect card() const {
    const MenuView& view = *panel().findChild<MenuView*>();
    return {view.mapToGlobal(QPoint()), view.size()};
  }
  /// The middle of a row in the list's coordinates.
  QPoint middleOf(int row) const { return list().visualRect(controller.model().index(row)).center(); }

  PanelWindow& native;
  QRect icon;
  FakeWindowOpener windows;
  MenuWindow* window = nullptr;
  mutable MenuController controller{{registry, hotkeys, network, sounds, clock, windows},
                                    [this](MenuController& owner) {
                                      auto made = std::make_unique<MenuWindow>(owner, native, [this] { return icon; });
                                      window = made.get();
                                      return made;
                                    }};
};
