#pragma once

#include "capture/region_selector.h"
#include "core/presenters/launcher_opener.h"
#include "core/presenters/toast_presenter.h"
#include "core/tools/tool.h"
#include "platform/permissions.h"
#include "tools/screen_ask/image_ask_panel_controller.h"

inline constexpr QLatin1StringView kImageAskID{"image-ask"};

/// Lets the user draw a region of the screen, and opens the panel with it.
class ImageAskTool final : public Tool {
 public:
  struct Services {
    ImageAskPanelController& panel;
    RegionSelector& regions;
    Permissions& permissions;
    LauncherOpener& launcher;
    ToastPresenter& toasts;
  };

  ImageAskTool(const Services& services, SettingsViewFactory settingsView);

  /// Closes the panel when it is shown.
  void activate() override;

 private:
  void take(const std::optional<QByteArray>& png, bool fromLauncher);
  void askForPermission();

  Services services_;
  Job selection_;
};
