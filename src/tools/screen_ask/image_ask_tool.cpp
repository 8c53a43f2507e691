#include "tools/screen_ask/image_ask_tool.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kPermissionToast = 8s;

}  // namespace

ImageAskTool::ImageAskTool(const Services& services, SettingsViewFactory settingsView)
    : Tool(toolInfo(kImageAskID), std::move(settingsView)), services_(services) {}

void ImageAskTool::activate() {
  const bool fromLauncher = services_.launcher.takeStartedFromLauncher();
  if (services_.panel.isShown()) return services_.panel.close();
  if (services_.permissions.state(Permission::screenRecording) != PermissionState::granted) return askForPermission();
  selection_ = Job::start();
  services_.regions.begin(
      u"Image Ask"_s, u"questionmark.bubble"_s,
      selection_.bind([this, fromLauncher](const std::optional<QByteArray>& png) { take(png, fromLauncher); }));
}

void ImageAskTool::take(const std::optional<QByteArray>& png, bool fromLauncher) {
  if (png)
    services_.panel.show(*png, fromLauncher);
  else if (fromLauncher && !services_.regions.hasUserTurnedAway())
    services_.launcher.showLauncher(kImageAskID);
}

/// Where the system has nothing to ask the user, what is missing is said here.
void ImageAskTool::askForPermission() {
  services_.permissions.request(Permission::screenRecording);
  if (services_.permissions.hasSettingsPage(Permission::screenRecording)) return;
  services_.toasts.show({.icon = icon(),
                         .title = u"Screen Recording permission needed"_s,
                         .detail = services_.permissions.remedy(Permission::screenRecording)},
                        kPermissionToast);
}
