#pragma once

#include <map>

#include "capture/region_selector.h"
#include "core/presenters/toast_presenter.h"
#include "core/settings/app_preferences.h"
#include "core/tools/tool.h"
#include "platform/permissions.h"
#include "platform/system_info.h"
#include "services/clipboard_images.h"
#include "tools/image_to_url/uplink_settings.h"
#include "tools/image_to_url/uplink_uploader.h"

inline constexpr QLatin1StringView kUplinkID{"uplink"};

/// Uploads the image on the clipboard, or a region of the screen, and puts its link on the clipboard, which stays
/// untouched until then. Each activation goes its own way; the end of the tool ends all of them silently.
class UplinkTool final : public Tool {
 public:
  struct Services {
    const UplinkStore& settings;
    UplinkUploader& uploader;
    Pasteboard& pasteboard;
    RegionSelector& regions;
    Permissions& permissions;
    const SystemInfo& system;
    ToastPresenter& toasts;
    const AppPreferences& preferences;
    /// The shortcut as it is displayed; empty without one.
    std::function<QString()> shortcut;
  };

  UplinkTool(Services services, SettingsViewFactory settingsView);

  void activate() override;
  /// Uploads `image` with everything that the user sees of it.
  void upload(const ClipboardImage& image);

 private:
  using Activation = int;

  Activation begin();
  void uploadFromClipboard();
  void selectRegion();
  void upload(const ClipboardImage& image, Activation activation);
  void finish(Activation activation, const std::expected<QUrl, UplinkError>& link);
  void showNoImage();
  void showNoPermission();

  Services services_;
  ClipboardImages images_;
  /// Those that are under way.
  std::map<Activation, Job> activations_;
  Activation lastActivation_ = 0;
};
