#pragma once

#include "core/presenters/palette_presenter.h"
#include "core/ui/palette_panel.h"
#include "core/ui/panel_position.h"

class ReportPanelController;
class ReportView;

/// The window of feedback or of suggestions: it stays up while the user looks something up in another one, and stands
/// where it was put last.
class ReportPanel final : public QObject, public PalettePresenter {
  Q_OBJECT

 public:
  /// Takes ownership of `view`; `position` is where its place is remembered.
  ReportPanel(PanelWindow& native, ReportPanelController& controller, ReportView* view, PanelPosition position);

  void present() override;
  void warmUp() override;
  void dismiss() override { panel_.dismiss(); }

  PalettePanel& panel() { return panel_; }

 private:
  PalettePanel panel_;
  ReportView* view_;
  PanelPosition position_;
};
