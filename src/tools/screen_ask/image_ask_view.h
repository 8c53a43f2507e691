#pragma once

#include "tools/asking/ask_view.h"

class ImageAskPanelController;

/// The card of Screen ask: the capture, and beside it the conversation about it.
class ImageAskView : public AskView {
  Q_OBJECT

 public:
  explicit ImageAskView(ImageAskPanelController& controller, QWidget* parent = nullptr);

  /// Without the keyboard, the foot says how to get it.
  void setHasKeyboard(bool hasKeyboard);

 protected:
  std::vector<KeyHint> hints() const override;
  void follow() override;

 private:
  ImageAskPanelController& controller_;
};
