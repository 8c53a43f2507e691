#pragma once

#include "core/tools/tool.h"
#include "tools/file_drop/bulk_upload_panel_controller.h"

inline constexpr QLatin1StringView kBulkUploadID{"bulk-upload"};

/// Turns files and folders into one link; its window is the controller's.
class BulkUploadTool final : public Tool {
 public:
  BulkUploadTool(BulkUploadPanelController& panel, SettingsViewFactory settingsView)
      : Tool(toolInfo(kBulkUploadID), std::move(settingsView)), panel_(panel) {}

  void activate() override { panel_.show(); }

 private:
  BulkUploadPanelController& panel_;
};
