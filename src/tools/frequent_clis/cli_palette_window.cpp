#include "tools/frequent_clis/cli_palette_window.h"

#include "core/ui/panel_menu.h"
#include "tools/frequent_clis/cli_palette_controller.h"
#include "tools/frequent_clis/cli_palette_view.h"

namespace {

const CLICommand& commandAt(CLIPaletteController& controller, int row) {
  return controller.model().filtered().at(static_cast<std::size_t>(row));
}

}  // namespace

CLIPaletteWindow::CLIPaletteWindow(PanelWindow& native, CLIPaletteController& controller)
    : CLIPaletteWindow(native, controller, new CLIPaletteView(controller.model())) {}

CLIPaletteWindow::CLIPaletteWindow(PanelWindow& native, CLIPaletteController& controller, CLIPaletteView* view)
    : PaletteWindow(native, view, controller) {
  panel().setKeyHandler(
      [view, &controller](const KeyPress& key) { return view->menu().handleKey(key) || controller.handleKey(key); });
  QObject::connect(view, &CLIPaletteView::chosen, view,
                   [&controller](int row) { controller.choose(commandAt(controller, row)); });
  QObject::connect(view, &CLIPaletteView::editRequested, view,
                   [&controller](int row) { controller.edit(commandAt(controller, row)); });
}
