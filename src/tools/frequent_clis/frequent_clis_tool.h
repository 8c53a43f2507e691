#pragma once

#include "core/tools/tool.h"

class CLIPaletteController;

inline constexpr QLatin1StringView kFrequentCLIsID{"frequent-clis"};

/// Types a saved command into the focused application; its palette is the controller's.
class FrequentCLIsTool final : public Tool {
 public:
  FrequentCLIsTool(CLIPaletteController& palette, SettingsViewFactory settingsView)
      : Tool(toolInfo(kFrequentCLIsID), std::move(settingsView)), palette_(palette) {}

  void activate() override;

 private:
  CLIPaletteController& palette_;
};
