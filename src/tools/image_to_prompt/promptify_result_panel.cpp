#include "tools/image_to_prompt/promptify_result_panel.h"

#include "core/ui/panel_menu.h"
#include "core/ui/theme.h"
#include "tools/image_to_prompt/promptify_result_controller.h"
#include "tools/image_to_prompt/promptify_result_view.h"

namespace {

QSize sizeFor(const PromptifyResultModel& model) {
  const QSize card(promptcard::kWidth, static_cast<int>(model.bodyHeight()) + promptcard::kAroundBody);
  return card + QSize(2 * Theme::kPanelMargin, 2 * Theme::kPanelMargin);
}

}  // namespace

PromptifyResultPanel::PromptifyResultPanel(PanelWindow& native, PromptifyResultController& controller)
    : panel_(native, sizeFor(controller.model())) {
  auto* view = new PromptifyResultView(controller);
  panel_.setWindowTitle(view->windowTitle());
  panel_.setContent(view);
  panel_.setMovable(true);
  panel_.setStaysUp(true);
  panel_.setKeyHandler(
      [view, &controller](const KeyPress& key) { return view->menu().handleKey(key) || controller.handleKey(key); });
  QObject::connect(&panel_, &PalettePanel::becameKey, view, [view] { view->setHasKeyboard(true); });
  QObject::connect(&panel_, &PalettePanel::resignedKey, view, [view] { view->setHasKeyboard(false); });
  view->setFocus();
}

void PromptifyResultPanel::present() {
  panel_.positionOnActiveScreen();
  panel_.present();
}
