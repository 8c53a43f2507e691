#pragma once

#include "core/tools/tool.h"
#include "tools/generate_image/generate_image_panel_controller.h"

inline constexpr QLatin1StringView kGenerateImageID{"generate-image"};

/// Makes pictures from words and images; its window is the controller's.
class GenerateImageTool final : public Tool {
 public:
  GenerateImageTool(GenerateImagePanelController& panel, SettingsViewFactory settingsView)
      : Tool(toolInfo(kGenerateImageID), std::move(settingsView)), panel_(panel) {}

  void activate() override { panel_.toggle(); }

 private:
  GenerateImagePanelController& panel_;
};
