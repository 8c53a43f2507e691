#pragma once

#include "app/app_context.h"
#include "app/tools/tool_kit.h"
#include "tools/text_transform/ai_text_transform_tool.h"
#include "tools/text_transform/copying_selection_reader.h"
#include "tools/text_transform/typing_selection_replacer.h"

class TransformKit final : public ToolKit {
 public:
  /// `keystrokes` must live as long.
  TransformKit(AppContext& context, KeystrokeSender& keystrokes);
  /// A transform that is under way does not leave the selection on the clipboard.
  ~TransformKit() override;

  std::unique_ptr<Tool> makeTool() override;
  void prepare() override;

  AITextTransformStore& settings() { return settings_; }

 private:
  AppContext& context_;
  DisplacedClipboard displaced_;
  CopyingSelectionReader reader_;
  TypingSelectionReplacer replacer_;
  AITextTransformStore settings_;
  AITextTransformClient client_;
  TextModePickerController picker_;
  CustomInstructionController instruction_;
  /// The registry's.
  AITextTransformTool* tool_ = nullptr;
};
