#pragma once

#include <map>

#include "core/settings/app_preferences.h"
#include "core/tools/tool.h"
#include "services/image_source_picker.h"
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
    ImageSourcePicker images;
    Pasteboard& pasteboard;
    ToastPresenter& toasts;
    const AppPreferences& preferences;
  };

  UplinkTool(Services services, SettingsViewFactory settingsView);

  void activate() override;
  /// Uploads `image` with everything that the user sees of it.
  void upload(const ClipboardImage& image);

 private:
  using Activation = int;

  Activation begin();
  void upload(const ClipboardImage& image, Activation activation);
  void finish(Activation activation, const std::expected<QUrl, UplinkError>& link);

  Services services_;
  /// Those that are under way.
  std::map<Activation, Job> activations_;
  Activation lastActivation_ = 0;
};
