#include "tools/ask_ai/quick_question_panel.h"

#include "tools/ask_ai/quick_question_panel_controller.h"
#include "tools/ask_ai/quick_question_view.h"

namespace {

/// With its margin.
constexpr QSize kSize(676, 496);
constexpr double kPage = 0.9;

}  // namespace

QuickQuestionPanel::QuickQuestionPanel(PanelWindow& native, QuickQuestionPanelController& controller,
                                       const OpenLink& openLink)
    : controller_(controller), panel_(native, kSize), view_(new QuickQuestionView(controller)) {
  panel_.setWindowTitle(view_->windowTitle());
  panel_.setContent(view_);
  panel_.setTabMovesFocus(true);
  // Tab goes round among the controls, none of which is the panel.
  panel_.setFocusPolicy(Qt::NoFocus);
  panel_.setTakesDrags(true);
  panel_.setKeyHandler([this](const KeyPress& key) { return handleKey(key); });
  connect(&panel_, &PalettePanel::resignedKey, &controller, &QuickQuestionPanelController::lostKeyboard);
  connect(view_, &QuickQuestionView::dropped, &panel_, &PalettePanel::takeKeyboard);
  connect(view_, &QuickQuestionView::linkChosen, this, [this, openLink](const QUrl& url) {
    openLink(url);
    controller_.hide();
  });
}

/// What is marked goes before the latest answer.
bool QuickQuestionPanel::handleKey(const KeyPress& key) {
  if (key.isCommand(u'c', keycode::kC)) {
    if (const QString text = view_->selectedText(); !text.isEmpty()) {
      controller_.copy(text);
      return true;
    }
  }
  if (key.keyCode == keycode::kPageUp || key.keyCode == keycode::kPageDown) {
    view_->scrollTranscript(key.keyCode == keycode::kPageUp ? -kPage : kPage);
    return true;
  }
  if (key.isText() && !key.command) view_->takeTyping(key.characters);
  return controller_.handleKey(key);
}

void QuickQuestionPanel::present() {
  if (!panel_.isVisible()) panel_.positionOnActiveScreen();
  view_->focusField();
  panel_.present();
}

void QuickQuestionPanel::warmUp() {
  panel_.winId();
  panel_.grab();
}
