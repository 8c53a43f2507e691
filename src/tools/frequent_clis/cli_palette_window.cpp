#include "tools/frequent_clis/cli_palette_window.h"

#include "tools/frequent_clis/cli_palette_view.h"

using namespace Qt::StringLiterals;

namespace {

/// The card of 620 × 380 with its margin on every side.
constexpr QSize kSize(716, 476);

const CLICommand& commandAt(CLIPaletteController& controller, int row) {
  return controller.model().filtered().at(static_cast<std::size_t>(row));
}

}  // namespace

CLIPaletteWindow::CLIPaletteWindow(PanelWindow& native, CLIPaletteController& controller) : panel_(native, kSize) {
  auto* view = new CLIPaletteView(controller.model());
  panel_.setWindowTitle(u"Frequent CLIs"_s);
  panel_.setContent(view);
  // Escape closes an open context menu first; other keys close it and work on the list as ever.
  panel_.setKeyHandler([view, &controller](const KeyPress& key) {
    const bool menuWasOpen = view->closeMenu();
    return (menuWasOpen && key.keyCode == keycode::kEscape) || controller.handleKey(key);
  });
  QObject::connect(&panel_, &PalettePanel::resignedKey, view, [&controller] { controller.hide(); });
  QObject::connect(view, &CLIPaletteView::chosen, view,
                   [&controller](int row) { controller.choose(commandAt(controller, row)); });
  QObject::connect(view, &CLIPaletteView::editRequested, view,
                   [&controller](int row) { controller.edit(commandAt(controller, row)); });
}

void CLIPaletteWindow::present() {
  panel_.positionOnActiveScreen();
  panel_.present();
}

void CLIPaletteWindow::warmUp() {
  panel_.winId();
  panel_.grab();
}

void CLIPaletteWindow::dismiss() { panel_.dismiss(); }
