#pragma once

#include "app/app_context.h"
#include "app/tools/tool_kit.h"
#include "tools/open_project/open_project_controller.h"

class OpenProjectKit final : public ToolKit {
 public:
  OpenProjectKit(AppContext& context, const VibeHistoryStore& history, const SessionTraceScanner& scanner);

  std::unique_ptr<Tool> makeTool() override;
  void prepare() override { palette_.prepare(); }
  /// Asks with what to open a folder that is no recent project yet.
  void offer(const QString& path) { palette_.offer(path); }

 private:
  OpenProjectStore settings_;
  ProjectLauncher projects_;
  InstalledPresets installed_;
  OpenProjectController palette_;
};
