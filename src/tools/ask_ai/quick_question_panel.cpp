#include "tools/ask_ai/quick_question_panel.h"

#include "tools/ask_ai/quick_question_panel_controller.h"
#include "tools/ask_ai/quick_question_view.h"

QuickQuestionPanel::QuickQuestionPanel(PanelWindow& native, QuickQuestionPanelController& controller,
                                       const OpenLink& openLink)
    : QuickQuestionPanel(native, controller, new QuickQuestionView(controller), openLink) {}

QuickQuestionPanel::QuickQuestionPanel(PanelWindow& native, QuickQuestionPanelController& controller,
                                       QuickQuestionView* view, const OpenLink& openLink)
    : AskPanel(native, controller, view) {
  panel().setTakesDrags(true);
  connect(&panel(), &PalettePanel::resignedKey, &controller, &QuickQuestionPanelController::lostKeyboard);
  connect(view, &QuickQuestionView::dropped, &panel(), &PalettePanel::takeKeyboard);
  connect(view, &AskView::linkChosen, this, [&controller, openLink](const QUrl& url) {
    openLink(url);
    controller.hide();
  });
}
