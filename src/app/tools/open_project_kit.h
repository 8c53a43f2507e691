#pragma once

#include "app/app_context.h"
#include "app/tools/tool_kit.h"
#include "tools/open_project/open_project_controller.h"

class OpenProjectKit final : public ToolKit {
 public:
  OpenProjectKit(AppContext& context, const VibeHistoryStore& history, const SessionTraceScanner& scanner);

  std::unique_ptr<Tool> makeTool() override;
  void prepare() override;
  OpenProjectController& palette() { return palette_; }

 private:
  OpenProjectStore settings_;
  NewProjectStore newProjects_;
  ProjectLauncher projects_;
  InstalledPresets installed_;
  OpenProjectController palette_;
};
