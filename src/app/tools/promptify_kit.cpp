#include "app/tools/promptify_kit.h"

#include "core/ui/choice_picker_window.h"
#include "tools/image_to_prompt/prompt_text.h"
#include "tools/image_to_prompt/promptify_result_panel.h"
#include "tools/image_to_prompt/promptify_settings_view.h"

using namespace Qt::StringLiterals;

namespace {

/// With the margin for the shadow.
constexpr QSize kPicker(556, 336);

}  // namespace

PromptifyKit::PromptifyKit(AppContext& context)
    : context_(context),
      settings_(context.folders.file(u"Promptify/settings.json"_s)),
      client_(context.services.environments, context.services.http),
      modes_(context.launcher,
             [this, &native = *context.platform.panelWindow] {
               const ToolInfo& tool = toolInfo(kPromptifyID);
               const ChoicePickerView::Texts texts{tool.name, tool.icon, u"Choose a prompt style"_s};
               return std::make_unique<ChoicePickerWindow>(native, modes_, texts, kPicker);
             }),
      result_({*context.platform.pasteboard, context.clock, &PromptText::heightOf,
               [this, &native = *context.platform.panelWindow] {
                 return std::make_unique<PromptifyResultPanel>(native, result_);
               }}) {}

std::unique_ptr<Tool> PromptifyKit::makeTool() {
  const Platform& platform = context_.platform;
  const auto shortcut = [this] { return context_.registry.shortcutDisplay(*context_.registry.tool(kPromptifyID)); };
  const ToolInfo& info = toolInfo(kPromptifyID);
  ImageSourcePicker images(
      {*platform.pasteboard, context_.regionPicker(), context_.toasts, shortcut},
      {info.name, info.icon, {.icon = u"rectangle.dashed.badge.record"_s, .iconColor = QColorConstants::White}});
  return std::make_unique<PromptifyTool>(
      PromptifyTool::Services{settings_, client_, std::move(images), modes_, result_, *platform.keyTargets,
                              context_.toasts, *platform.sounds, context_.preferences, context_.launcher},
      [this, &platform](QWidget* parent) {
        return new PromptifySettingsView({settings_, client_, *platform.permissions, *platform.systemInfo}, parent);
      });
}
