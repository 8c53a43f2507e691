#pragma once

#include "app/app_context.h"
#include "app/tools/tool_kit.h"
#include "tools/screen_ask/image_ask_client.h"
#include "tools/screen_ask/image_ask_panel_controller.h"

class ScreenAskKit final : public ToolKit {
 public:
  explicit ScreenAskKit(AppContext& context);

  std::unique_ptr<Tool> makeTool() override;

 private:
  AppContext& context_;
  ImageAskClient client_;
  ImageAskPanelController panel_;
};
