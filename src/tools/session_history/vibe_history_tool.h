#pragma once

#include "core/tools/tool.h"
#include "tools/session_history/vibe_history_palette_controller.h"

inline constexpr QLatin1StringView kVibeHistoryID{"vibe-history"};

/// Takes up a recent conversation with an agent; its palette is the controller's.
class VibeHistoryTool final : public Tool {
 public:
  VibeHistoryTool(VibeHistoryPaletteController& palette, SettingsViewFactory settingsView)
      : Tool(toolInfo(kVibeHistoryID), std::move(settingsView)), palette_(palette) {}

  void activate() override { palette_.show(); }

 private:
  VibeHistoryPaletteController& palette_;
};
