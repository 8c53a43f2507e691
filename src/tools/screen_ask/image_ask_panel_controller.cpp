#include "tools/screen_ask/image_ask_panel_controller.h"

#include "core/presenters/launcher_opener.h"
#include "tools/screen_ask/image_ask_tool.h"

ImageAskPanelController::ImageAskPanelController(const Services& services, PanelFactory makePanel)
    : services_(services),
      makePanel_(std::move(makePanel)),
      conversation_(model_, {services_.pasteboard, services_.clock},
                    [this](const AskQuestion& question, const AskCall& call) {
                      services_.client.ask(question, model_.imagePNG(), call);
                    }) {}

PalettePresenter& ImageAskPanelController::panel() {
  if (!panel_) panel_ = makePanel_();
  return *panel_;
}

void ImageAskPanelController::show(const QByteArray& png, bool returnsToLauncher) {
  conversation_.cancel();
  returnsToLauncher_ = returnsToLauncher;
  model_.setCapture(png);
  shown_ = true;
  panel().present();
}

void ImageAskPanelController::close() {
  if (!shown_) return;
  shown_ = false;
  conversation_.cancel();
  panel_->dismiss();
  model_.clear();
}

void ImageAskPanelController::escape() {
  close();
  if (returnsToLauncher_) services_.launcher.showLauncher(kImageAskID);
}

bool ImageAskPanelController::handleKey(const KeyPress& key) {
  if (!shown_) return false;
  if (key.keyCode == keycode::kEscape) {
    escape();
    return true;
  }
  if (key.isCommand(u'n', keycode::kN)) {
    startOver();
    return true;
  }
  return key.isCommand(u'c', keycode::kC) && copyLatestAnswer();
}
