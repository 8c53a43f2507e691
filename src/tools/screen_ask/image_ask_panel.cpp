#include "tools/screen_ask/image_ask_panel.h"

#include "tools/screen_ask/image_ask_panel_controller.h"
#include "tools/screen_ask/image_ask_view.h"

namespace {

/// With its margin.
constexpr QSize kSize(676, 496);
constexpr double kPage = 0.9;

}  // namespace

ImageAskPanel::ImageAskPanel(PanelWindow& native, ImageAskPanelController& controller, const OpenLink& openLink)
    : controller_(controller), panel_(native, kSize), view_(new ImageAskView(controller)) {
  panel_.setWindowTitle(view_->windowTitle());
  panel_.setContent(view_);
  panel_.setTabMovesFocus(true);
  // Tab goes round among the controls, none of which is the panel.
  panel_.setFocusPolicy(Qt::NoFocus);
  panel_.setStaysUp(true);
  panel_.setMovable(true);
  panel_.setKeyHandler([this](const KeyPress& key) { return handleKey(key); });
  connect(&panel_, &PalettePanel::becameKey, view_, [this] { view_->setHasKeyboard(true); });
  connect(&panel_, &PalettePanel::resignedKey, view_, [this] { view_->setHasKeyboard(false); });
  connect(view_, &ImageAskView::linkChosen, this, openLink);
}

/// What is marked goes before the latest answer.
bool ImageAskPanel::handleKey(const KeyPress& key) {
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

void ImageAskPanel::present() {
  if (!panel_.isVisible()) panel_.positionOnActiveScreen();
  view_->focusField();
  panel_.present();
}

void ImageAskPanel::warmUp() {
  panel_.winId();
  panel_.grab();
}
