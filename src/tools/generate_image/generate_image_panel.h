#pragma once

#include "core/ui/standing_panel.h"

class GenerateImagePanelController;
class GenerateImageView;

/// The Generate Image panel on the screen.
class GenerateImagePanel final : public StandingPanel {
 public:
  GenerateImagePanel(PanelWindow& native, QSettings& defaults, GenerateImagePanelController& controller);

 private:
  GenerateImagePanel(PanelWindow& native, QSettings& defaults, GenerateImagePanelController& controller,
                     GenerateImageView* view);
};
