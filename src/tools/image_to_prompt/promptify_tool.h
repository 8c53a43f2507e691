#pragma once

#include "core/settings/app_preferences.h"
#include "core/tools/escape_route.h"
#include "core/tools/tool.h"
#include "platform/sounds.h"
#include "services/image_source_picker.h"
#include "tools/image_to_prompt/prompt_mode.h"
#include "tools/image_to_prompt/promptify_client.h"
#include "tools/image_to_prompt/promptify_settings.h"

class LauncherOpener;
class PromptModePickerController;
class PromptifyResultController;

inline constexpr QLatin1StringView kPromptifyID{"promptify"};

/// Describes the image on the clipboard, or a region of the screen, as the prompt that would recreate it. One at a
/// time: an activation ends the one before.
class PromptifyTool final : public Tool {
 public:
  struct Services {
    const PromptifyStore& settings;
    PromptifyClient& client;
    ImageSourcePicker images;
    PromptModePickerController& modes;
    PromptifyResultController& result;
    const KeyTargets& keyTargets;
    ToastPresenter& toasts;
    Sounds& sounds;
    const AppPreferences& preferences;
    LauncherOpener& launcher;
  };

  PromptifyTool(Services services, SettingsViewFactory settingsView);

  void activate() override;
  /// Asks for the prompt behind `image`, with everything that the user sees of it.
  void process(const ClipboardImage& image, PromptMode mode);
  /// Ends the request under way, if there is one.
  void cancel();

 private:
  void chooseMode(const ClipboardImage& image);
  void finish(const QImage& source, const QString& prompt, PromptMode mode);
  void fail(const PromptifyError& error);
  void end();

  Services services_;
  /// From the activation to its result.
  Job task_;
  EscapeRoute escape_;
  /// Where the user was at the activation.
  KeyTarget startedIn_ = KeyTarget::none;
};
