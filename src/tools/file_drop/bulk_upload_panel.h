#pragma once

#include "core/ui/standing_panel.h"

class BulkUploadPanelController;

/// The drop window on the screen.
class BulkUploadPanel final : public StandingPanel {
 public:
  BulkUploadPanel(PanelWindow& native, QSettings& defaults, BulkUploadPanelController& controller);
};
