#pragma once

#include "core/tools/tool.h"
#include "tools/boilerplates/boilerplates_palette_controller.h"

inline constexpr QLatin1StringView kBoilerplatesID{"boilerplates"};

/// Starts a project from one of the user's template folders; its palette is the controller's.
class BoilerplatesTool final : public Tool {
 public:
  BoilerplatesTool(BoilerplatesPaletteController& palette, SettingsViewFactory settingsView)
      : Tool(toolInfo(kBoilerplatesID), std::move(settingsView)), palette_(palette) {}

  void activate() override { palette_.show(); }

 private:
  BoilerplatesPaletteController& palette_;
};
