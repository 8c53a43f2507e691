#pragma once

#include "support/fake_platform.h"
#include "support/fake_presenters.h"
#include "support/fake_region_selector.h"
#include "support/service_world.h"
#include "tools/image_to_url/uplink_tool.h"

/// A system whose settings have no page for any permission.
class FakePagelessPermissions final : public Permissions {
 public:
  PermissionState state(Permission) const override { return PermissionState::unavailable; }
  QString remedy(Permission) const override { return QStringLiteral("Log in to a desktop."); }
};

/// Image to URL over fakes; `client` sends its requests.
struct UplinkWorld : ServiceWorld {
  explicit UplinkWorld(HttpClient* client = nullptr) : uploader(services.environments, client ? *client : http) {}

  static QByteArray somePNG(qsizetype size) { return QByteArray("\x89PNG\r\n\x1a\n") + QByteArray(size - 8, 'x'); }
  void copyImage(qsizetype size = 60'000) { pasteboard.data = {{PasteboardFormat::png, somePNG(size)}}; }
  std::unique_ptr<UplinkTool> makeTool(Permissions& chosen) {
    const auto display = [this] { return shortcut; };
    return std::make_unique<UplinkTool>(
        UplinkTool::Services{settings, uploader, images(chosen, display), pasteboard, toasts, preferences},
        SettingsViewFactory());
  }
  ImageSourcePicker images(Permissions& chosen, std::function<QString()> display) {
    const ToolInfo& info = toolInfo(kUplinkID);
    return {{pasteboard, RegionPicker({regions, chosen, system, toasts}), toasts, std::move(display)},
            {info.name, info.icon, {.icon = info.icon}}};
  }
  /// "title|detail|seconds" of the toast that is up.
  QString toast() const {
    if (toasts.shown.empty()) return {};
    const auto& [content, duration] = toasts.shown.back();
    return QStringLiteral("%1|%2|%3").arg(content.title, content.detail).arg(duration.count() / 1000);
  }

  FakePasteboard pasteboard;
  FakeRegionSelector regions;
  FakePermissions permissions;
  FakeSystem system;
  FakeToasts toasts;
  AppPreferences preferences{folders.file(QStringLiteral("app-settings.json"))};
  UplinkStore settings{folders.file(QStringLiteral("Uplink/settings.json"))};
  QString shortcut = QStringLiteral("⌃⌥U");
  UplinkUploader uploader;
};
