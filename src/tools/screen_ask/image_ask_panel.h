#pragma once

#include "core/presenters/palette_presenter.h"
#include "core/ui/palette_panel.h"

class QUrl;
class ImageAskPanelController;
class ImageAskView;

/// The panel of Screen ask, which stays up while the user turns to what was captured.
class ImageAskPanel final : public QObject, public PalettePresenter {
  Q_OBJECT

 public:
  /// Opens a web address in the user's browser.
  using OpenLink = std::function<void(const QUrl&)>;

  ImageAskPanel(PanelWindow& native, ImageAskPanelController& controller, const OpenLink& openLink);

  void present() override;
  void warmUp() override;
  void dismiss() override { panel_.dismiss(); }

  PalettePanel& panel() { return panel_; }

 private:
  bool handleKey(const KeyPress& key);

  ImageAskPanelController& controller_;
  PalettePanel panel_;
  ImageAskView* view_;
};
