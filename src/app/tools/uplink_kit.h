#pragma once

#include "app/app_context.h"
#include "app/tools/tool_kit.h"
#include "tools/image_to_url/uplink_settings.h"
#include "tools/image_to_url/uplink_uploader.h"

class UplinkKit final : public ToolKit {
 public:
  explicit UplinkKit(AppContext& context);

  std::unique_ptr<Tool> makeTool() override;

  UplinkStore& settings() { return settings_; }

 private:
  AppContext& context_;
  UplinkStore settings_;
  UplinkUploader uploader_;
};
