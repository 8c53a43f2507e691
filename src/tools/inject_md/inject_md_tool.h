#pragma once

#include "core/tools/tool.h"
#include "tools/inject_md/inject_md_palette_controller.h"

inline constexpr QLatin1StringView kInjectMDID{"inject-md"};

/// Writes an instruction file for agents into a project; its palette is the controller's.
class InjectMDTool final : public Tool {
 public:
  InjectMDTool(InjectMDPaletteController& palette, SettingsViewFactory settingsView)
      : Tool(toolInfo(kInjectMDID), std::move(settingsView)), palette_(palette) {}

  void activate() override { palette_.show(); }

 private:
  InjectMDPaletteController& palette_;
};
