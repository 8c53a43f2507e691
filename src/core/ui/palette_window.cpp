#include "core/ui/palette_window.h"

#include "core/palette/palette_controller.h"
#include "core/ui/palette_view.h"

PaletteWindow::PaletteWindow(PanelWindow& native, PaletteView* view, PaletteController& controller, QSize size)
    : panel_(native, size) {
  panel_.setWindowTitle(view->windowTitle());
  panel_.setContent(view);
  panel_.setKeyHandler([&controller](const KeyPress& key) { return controller.handleKey(key); });
  QObject::connect(&panel_, &PalettePanel::resignedKey, view, [&controller] { controller.hide(); });
}

void PaletteWindow::present() {
  panel_.positionOnActiveScreen();
  panel_.present();
}

void PaletteWindow::dismiss() { panel_.dismiss(); }
