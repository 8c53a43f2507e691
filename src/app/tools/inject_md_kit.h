#pragma once

#include "app/app_context.h"
#include "app/tools/tool_kit.h"
#include "tools/inject_md/folder_dialog.h"
#include "tools/inject_md/inject_md_palette_controller.h"

class InjectMDKit final : public ToolKit {
 public:
  InjectMDKit(AppContext& context, const VibeHistoryStore& history, const SessionTraceScanner& scanner);

  std::unique_ptr<Tool> makeTool() override;
  void prepare() override { palette_.prepare(); }

 private:
  InjectMDStore settings_;
  FolderDialog folderDialog_;
  InjectMDPaletteController palette_;
};
