#pragma once

#include "tools/asking/ask_panel.h"

class QUrl;
class ImageAskPanelController;
class ImageAskView;

/// The panel of Screen ask, which stays up while the user turns to what was captured.
class ImageAskPanel final : public AskPanel {
  Q_OBJECT

 public:
  /// Opens an address where the user opens such ones.
  using OpenLink = std::function<void(const QUrl&)>;

  ImageAskPanel(PanelWindow& native, ImageAskPanelController& controller, const OpenLink& openLink);

 private:
  ImageAskPanel(PanelWindow& native, ImageAskPanelController& controller, ImageAskView* view, const OpenLink& openLink);
};
