#include "app/tools/inject_md_kit.h"

#include <QDir>

#include "tools/inject_md/inject_md_palette_window.h"
#include "tools/inject_md/inject_md_settings_view.h"
#include "tools/inject_md/inject_md_tool.h"

using namespace Qt::StringLiterals;

InjectMDKit::InjectMDKit(AppContext& context, const VibeHistoryStore& history, const SessionTraceScanner& scanner)
    : settings_(context.folders.file(u"inject-md.json"_s)),
      palette_({settings_, history, scanner, context.toasts, context.clock, context.launcher,
                [this](const QString& title, auto answered) { folderDialog_.ask(title, std::move(answered)); },
                QDir::homePath()},
               [this, &native = *context.platform.panelWindow] {
                 return std::make_unique<InjectMDPaletteWindow>(native, palette_);
               }) {}

std::unique_ptr<Tool> InjectMDKit::makeTool() {
  return std::make_unique<InjectMDTool>(
      palette_, [this](QWidget* parent) { return new InjectMDSettingsView(settings_, parent); });
}
