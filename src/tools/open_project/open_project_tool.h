#pragma once

#include "core/tools/tool.h"
#include "tools/open_project/open_project_controller.h"

inline constexpr QLatin1StringView kOpenProjectID{"open-project"};

/// Opens a recent project folder; its palette is the controller's.
class OpenProjectTool final : public Tool {
 public:
  OpenProjectTool(OpenProjectController& palette, SettingsViewFactory settingsView)
      : Tool(toolInfo(kOpenProjectID), std::move(settingsView)), palette_(palette) {}

  void activate() override { palette_.show(); }

 private:
  OpenProjectController& palette_;
};
