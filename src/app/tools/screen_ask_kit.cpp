#include "app/tools/screen_ask_kit.h"

#include <QDesktopServices>

#include "tools/screen_ask/image_ask_panel.h"
#include "tools/screen_ask/image_ask_settings_view.h"
#include "tools/screen_ask/image_ask_tool.h"

ScreenAskKit::ScreenAskKit(AppContext& context)
    : context_(context),
      client_({context.services.environments, context.services.api, context.services.http, context.services.quota}),
      panel_({client_, *context.platform.pasteboard, context.clock, context.launcher},
             [this, &native = *context.platform.panelWindow] {
               return std::make_unique<ImageAskPanel>(native, panel_,
                                                      [](const QUrl& url) { QDesktopServices::openUrl(url); });
             }) {}

std::unique_ptr<Tool> ScreenAskKit::makeTool() {
  return std::make_unique<ImageAskTool>(ImageAskTool::Services{panel_, context_.regions, *context_.platform.permissions,
                                                               context_.launcher, context_.toasts},
                                        [this](QWidget* parent) { return new ImageAskSettingsView(client_, parent); });
}
