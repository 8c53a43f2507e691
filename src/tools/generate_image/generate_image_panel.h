#pragma once

#include "core/presenters/palette_presenter.h"
#include "core/ui/palette_panel.h"
#include "core/ui/panel_position.h"

class GenerateImagePanelController;
class GenerateImageView;

/// The Generate Image panel on the screen: it stays up while the user turns to other windows, and stands where it was
/// put last.
class GenerateImagePanel final : public QObject, public PalettePresenter {
  Q_OBJECT

 public:
  GenerateImagePanel(PanelWindow& native, QSettings& defaults, GenerateImagePanelController& controller);

  void present() override;
  void warmUp() override;
  void dismiss() override { panel_.dismiss(); }

  PalettePanel& panel() { return panel_; }

 private:
  void place();

  PalettePanel panel_;
  GenerateImageView* view_;
  PanelPosition position_;
};
