#pragma once

#include "app/app_context.h"
#include "app/tools/tool_kit.h"
#include "tools/session_history/vibe_history_palette_controller.h"
#include "tools/session_history/vibe_history_settings.h"

class VibeHistoryKit final : public ToolKit {
 public:
  VibeHistoryKit(AppContext& context, CommandTyper& typer, const SessionTraceScanner& scanner);

  VibeHistoryStore& settings() { return settings_; }

  std::unique_ptr<Tool> makeTool() override;
  void prepare() override { palette_.prepare(); }

 private:
  VibeHistoryStore settings_;
  VibeHistoryPaletteController palette_;
};
