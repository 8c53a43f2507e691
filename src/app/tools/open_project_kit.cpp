#include "app/tools/open_project_kit.h"

#include <QDir>

#include "tools/open_project/open_project_settings_view.h"
#include "tools/open_project/open_project_tool.h"
#include "tools/open_project/open_project_window.h"

using namespace Qt::StringLiterals;

OpenProjectKit::OpenProjectKit(AppContext& context, const VibeHistoryStore& history, const SessionTraceScanner& scanner)
    : settings_(context.folders.file(u"open-project.json"_s)),
      newProjects_(context.folders.file(u"new-projects.json"_s)),
      projects_(ProjectLauncher::Settings::standard(*context.platform.systemInfo), context.clock),
      installed_(projects_.presets(), qEnvironmentVariable("SHELL")),
      palette_({settings_, history, scanner, projects_, installed_, *context.platform.pasteboard, newProjects_,
                context.toasts, context.clock, context.launcher},
               QDir::homePath(), [this, &native = *context.platform.panelWindow] {
                 return std::make_unique<OpenProjectWindow>(native, palette_);
               }) {}

std::unique_ptr<Tool> OpenProjectKit::makeTool() {
  return std::make_unique<OpenProjectTool>(
      palette_, [this](QWidget* parent) { return new OpenProjectSettingsView(settings_, installed_, parent); });
}

void OpenProjectKit::prepare() {
  projects_.removeOldScripts();
  palette_.prepare();
}
