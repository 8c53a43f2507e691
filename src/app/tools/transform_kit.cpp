#include "app/tools/transform_kit.h"

#include "core/ui/choice_picker_window.h"
#include "tools/text_transform/ai_text_transform_settings_view.h"
#include "tools/text_transform/custom_instruction_panel.h"

using namespace Qt::StringLiterals;

namespace {

constexpr QSize kPicker(556, 384);

ChoicePickerView::Texts pickerTexts() {
  return {u"AI Text Transform"_s, u"textformat.abc"_s, u"Transform selected text"_s};
}

}  // namespace

TransformKit::TransformKit(AppContext& context, KeystrokeSender& keystrokes)
    : context_(context),
      displaced_({*context.platform.pasteboard, context.clock}),
      reader_({*context.platform.keyTargets, *context.platform.selectedText, *context.platform.pasteboard, displaced_,
               keystrokes, context.clock}),
      replacer_({*context.platform.keyTargets, *context.platform.selectedText, *context.platform.pasteboard, displaced_,
                 keystrokes, context.clock}),
      settings_(context.folders.file(u"AITextTransform/settings.json"_s)),
      client_(context.services),
      picker_(context.launcher,
              [this, &native = *context.platform.panelWindow] {
                return std::make_unique<ChoicePickerWindow>(native, picker_, pickerTexts(), kPicker);
              }),
      instruction_([this, &native = *context.platform.panelWindow] {
        return std::make_unique<CustomInstructionPanel>(native, instruction_);
      }) {}

TransformKit::~TransformKit() {
  if (tool_) tool_->abandon();
}

std::unique_ptr<Tool> TransformKit::makeTool() {
  const Platform& platform = context_.platform;
  const auto shortcut = [this] {
    return context_.registry.shortcutDisplay(*context_.registry.tool(kAITextTransformID));
  };
  auto tool = std::make_unique<AITextTransformTool>(
      AITextTransformTool::Services{settings_, client_, reader_, replacer_, picker_, instruction_, *platform.pasteboard,
                                    *platform.keyTargets, *platform.permissions, *platform.systemInfo, context_.toasts,
                                    context_.preferences, context_.launcher, shortcut},
      [this, &platform](QWidget* parent) {
        return new AITextTransformSettingsView({settings_, client_, *platform.permissions, *platform.systemInfo},
                                               parent);
      });
  tool_ = tool.get();
  return tool;
}

void TransformKit::prepare() {
  picker_.prepare();
  instruction_.prepare();
}
