#include "tools/asking/ask_panel.h"

#include "core/ui/panel_menu.h"
#include "tools/asking/ask_flow.h"
#include "tools/asking/ask_view.h"

namespace {

/// With its margin.
constexpr QSize kSize(676, 496);
constexpr double kPage = 0.9;

}  // namespace

AskPanel::AskPanel(PanelWindow& native, AskFlow& flow, AskView* view)
    : flow_(flow), panel_(native, kSize), view_(view) {
  panel_.setWindowTitle(view_->windowTitle());
  panel_.setContent(view_);
  panel_.setTabMovesFocus(true);
  // Tab goes round among the controls, none of which is the panel.
  panel_.setFocusPolicy(Qt::NoFocus);
  panel_.setKeyHandler([this](const KeyPress& key) { return handleKey(key); });
}

bool AskPanel::handleKey(const KeyPress& key) {
  if (view_->menu().handleKey(key)) return true;
  // What is marked goes before the latest answer.
  if (key.isCommand(u'c', keycode::kC) && copySelection()) return true;
  if (key.keyCode == keycode::kPageUp || key.keyCode == keycode::kPageDown) {
    view_->scrollTranscript(key.keyCode == keycode::kPageUp ? -kPage : kPage);
    return true;
  }
  const bool isReturn = key.keyCode == keycode::kReturn || key.keyCode == keycode::kKeypadEnter;
  if (isReturn && view_->pressFocused()) return true;
  if (key.isText() && !key.command) view_->takeTyping(key.characters);
  return flow_.handleKey(key);
}

bool AskPanel::copySelection() {
  const QString text = view_->selectedText();
  if (!text.isEmpty()) flow_.copy(text);
  return !text.isEmpty();
}

void AskPanel::present() {
  if (!panel_.isVisible()) panel_.positionOnActiveScreen();
  view_->focusField();
  panel_.present();
}
