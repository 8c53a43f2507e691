#pragma once

#include "app/app_context.h"
#include "app/tools/tool_kit.h"
#include "tools/image_to_prompt/prompt_mode_picker_controller.h"
#include "tools/image_to_prompt/promptify_result_controller.h"
#include "tools/image_to_prompt/promptify_tool.h"

class PromptifyKit final : public ToolKit {
 public:
  explicit PromptifyKit(AppContext& context);

  std::unique_ptr<Tool> makeTool() override;
  void prepare() override { modes_.prepare(); }

  PromptifyStore& settings() { return settings_; }

 private:
  AppContext& context_;
  PromptifyStore settings_;
  PromptifyClient client_;
  PromptModePickerController modes_;
  PromptifyResultController result_;
};
