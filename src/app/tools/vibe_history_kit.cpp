#include "app/tools/vibe_history_kit.h"

#include "tools/session_history/vibe_history_palette_window.h"
#include "tools/session_history/vibe_history_settings_view.h"
#include "tools/session_history/vibe_history_tool.h"

using namespace Qt::StringLiterals;

VibeHistoryKit::VibeHistoryKit(AppContext& context, CommandTyper& typer, const SessionTraceScanner& scanner)
    : settings_(context.folders.file(u"VibeHistory/settings.json"_s)),
      palette_(
          {settings_, scanner, typer, *context.platform.pasteboard, context.toasts, context.clock, context.launcher},
          [this, &native = *context.platform.panelWindow] {
            return std::make_unique<VibeHistoryPaletteWindow>(native, palette_);
          }) {}

std::unique_ptr<Tool> VibeHistoryKit::makeTool() {
  return std::make_unique<VibeHistoryTool>(
      palette_, [this](QWidget* parent) { return new VibeHistorySettingsView(settings_, parent); });
}
