#pragma once

#include "core/presenters/launcher_opener.h"
#include "core/presenters/toast_presenter.h"
#include "core/settings/app_preferences.h"
#include "core/tools/escape_route.h"
#include "core/tools/tool.h"
#include "platform/permissions.h"
#include "platform/system_info.h"
#include "tools/text_transform/ai_text_transform_client.h"
#include "tools/text_transform/ai_text_transform_settings.h"
#include "tools/text_transform/custom_instruction_controller.h"
#include "tools/text_transform/selection.h"
#include "tools/text_transform/text_mode_picker_controller.h"

inline constexpr QLatin1StringView kAITextTransformID{"ai-text-transform"};

/// Rewrites what is selected in any application, by typing over it or on the clipboard. One transform at a time: a new
/// start ends a request that is under way, or the typing of its result. However a transform ends without a result, the
/// clipboard then holds what it held before.
class AITextTransformTool final : public Tool {
 public:
  struct Services {
    const AITextTransformStore& settings;
    AITextTransformClient& client;
    SelectionReader& reader;
    SelectionReplacer& replacer;
    TextModePickerController& picker;
    CustomInstructionController& instruction;
    Pasteboard& pasteboard;
    const KeyTargets& keyTargets;
    Permissions& permissions;
    const SystemInfo& system;
    ToastPresenter& toasts;
    const AppPreferences& preferences;
    LauncherOpener& launcher;
    /// The shortcut as it is displayed; empty without one.
    std::function<QString()> shortcut;
  };

  AITextTransformTool(Services services, SettingsViewFactory settingsView);

  void activate() override;
  /// Ends the request or the typing under way, if there is any, with the clipboard as it was before.
  void cancel();
  /// The program ends: puts the clipboard right, whatever is under way. Nothing happens afterwards.
  void abandon();

 private:
  enum class Stage { idle, reading, asking, requesting, placing, ended };

  void take(const Selection& selection);
  void chosen(std::optional<TextTransformMode> mode);
  void transform(TextTransformMode mode, const std::optional<QString>& instruction);
  void finish(const AITextTransformClient::Result& result);
  void replace(const QString& result);
  void copy(const QString& result, const QString& remark);
  /// Back to the start; what was selected, for whoever still needs it.
  Selection end();
  /// Nothing comes of it: the clipboard gets back what it held.
  void giveUp();

  void showReplaced(const QString& result);
  void showFailure(const AITextTransformError& error);
  void showNoSelection();
  void showNotCopied(const QString& obstacle);
  void showNoPermission();

  Services services_;
  Stage stage_ = Stage::idle;
  Job job_;
  Selection selection_;
  EscapeRoute escape_;
};
