#include "app/tools/uplink_kit.h"

#include "tools/image_to_url/uplink_settings_view.h"
#include "tools/image_to_url/uplink_tool.h"

using namespace Qt::StringLiterals;

UplinkKit::UplinkKit(AppContext& context)
    : context_(context),
      settings_(context.folders.file(u"Uplink/settings.json"_s)),
      uploader_(context.services.environments, context.services.http) {}

std::unique_ptr<Tool> UplinkKit::makeTool() {
  const Platform& platform = context_.platform;
  const auto shortcut = [this] { return context_.registry.shortcutDisplay(*context_.registry.tool(kUplinkID)); };
  const ToolInfo& info = toolInfo(kUplinkID);
  ImageSourcePicker images({*platform.pasteboard, context_.regionPicker(), context_.toasts, shortcut},
                           {info.name, info.icon, {.icon = info.icon}});
  return std::make_unique<UplinkTool>(
      UplinkTool::Services{settings_, uploader_, std::move(images), *platform.pasteboard, context_.toasts,
                           context_.preferences},
      [this, &platform](QWidget* parent) {
        return new UplinkSettingsView({settings_, uploader_, *platform.permissions, *platform.systemInfo}, parent);
      });
}
