#include "core/ui/choice_picker_window.h"

#include "core/picker/choice_picker_controller.h"

ChoicePickerWindow::ChoicePickerWindow(PanelWindow& native, ChoicePickerController& controller,
                                       const ChoicePickerView::Texts& texts, QSize size)
    : panel_(native, size) {
  auto* view = new ChoicePickerView(controller, texts);
  panel_.setWindowTitle(view->windowTitle());
  panel_.setContent(view);
  panel_.setKeyHandler([&controller](const KeyPress& key) { return controller.handleKey(key); });
  QObject::connect(&panel_, &PalettePanel::resignedKey, view, [&controller] { controller.cancel(); });
}

void ChoicePickerWindow::present() {
  panel_.positionOnActiveScreen();
  panel_.present();
}
