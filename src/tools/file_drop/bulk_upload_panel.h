#pragma once

#include "core/presenters/palette_presenter.h"
#include "core/ui/palette_panel.h"
#include "core/ui/panel_position.h"

class BulkUploadPanelController;
class BulkUploadView;

/// The drop window on the screen: it stays up while the user turns to other windows, and stands where it was put last.
class BulkUploadPanel final : public QObject, public PalettePresenter {
  Q_OBJECT

 public:
  BulkUploadPanel(PanelWindow& native, QSettings& defaults, BulkUploadPanelController& controller);

  void present() override;
  void warmUp() override;
  void dismiss() override { panel_.dismiss(); }

  PalettePanel& panel() { return panel_; }

 private:
  PalettePanel panel_;
  BulkUploadView* view_;
  PanelPosition position_;
};
