#pragma once

#include "core/ui/standing_panel.h"

class ReportPanelController;
class ReportView;

/// The window of feedback or of suggestions.
class ReportPanel final : public StandingPanel {
 public:
  /// Takes ownership of `view`; `position` is where its place is remembered.
  ReportPanel(PanelWindow& native, ReportPanelController& controller, ReportView* view, PanelPosition position);
};
