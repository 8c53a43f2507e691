#include "tools/text_transform/custom_instruction_panel.h"

#include "tools/text_transform/custom_instruction_controller.h"
#include "tools/text_transform/custom_instruction_view.h"

CustomInstructionPanel::CustomInstructionPanel(PanelWindow& native, CustomInstructionController& controller)
    : panel_(native, kSize), view_(new CustomInstructionView(controller)) {
  panel_.setWindowTitle(view_->windowTitle());
  panel_.setContent(view_);
  panel_.setKeyHandler([this, &controller](const KeyPress& key) {
    const bool isTab = key.keyCode == keycode::kTab && !key.command && !key.control && !key.option;
    if (isTab) view_->moveFocus(key.shift);
    return isTab || controller.handleKey(key);
  });
  QObject::connect(&panel_, &PalettePanel::resignedKey, view_, [&controller] { controller.cancel(); });
}

void CustomInstructionPanel::present() {
  panel_.positionOnActiveScreen();
  panel_.present();
  view_->focusText();
}
