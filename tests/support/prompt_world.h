#pragma once

#include "support/fake_palette.h"
#include "support/fake_platform.h"
#include "support/fake_presenters.h"
#include "support/fake_region_selector.h"
#include "support/service_world.h"
#include "tools/image_to_prompt/prompt_mode_picker_controller.h"
#include "tools/image_to_prompt/promptify_result_controller.h"
#include "tools/image_to_prompt/promptify_tool.h"

/// Image to Prompt over fakes. The height of a prompt is a pixel a character.
struct PromptWorld : ServiceWorld {
  void set(PromptStyleSetting style, ImageSource source = ImageSource::clipboard) {
    settings.update([=](PromptifySettings& values) { values = {style, source}; });
  }
  void copyImage(const QByteArray& png) { pasteboard.data = {{PasteboardFormat::png, png}}; }
  /// "title|detail|seconds" of the toast that is up.
  QString toast() const {
    if (toasts.shown.empty()) return {};
    const auto& [content, duration] = toasts.shown.back();
    return QStringLiteral("%1|%2|%3").arg(content.title, content.detail).arg(duration.count() / 1000);
  }
  PromptifyTool::Services toolServices() {
    const ToolInfo& info = toolInfo(kPromptifyID);
    ImageSourcePicker images(
        {pasteboard, RegionPicker({regions, permissions, system, toasts}), toasts, [this] { return shortcut; }},
        {info.name, info.icon, {.icon = QStringLiteral("rectangle.dashed.badge.record")}});
    return {settings, client, images, modes, result, targets, toasts, sounds, preferences, launcher};
  }

  FakePasteboard pasteboard;
  FakeKeyTargets targets;
  FakeRegionSelector regions;
  FakePermissions permissions;
  FakeSystem system;
  FakeToasts toasts;
  FakeSounds sounds;
  FakeLauncherOpener launcher;
  AppPreferences preferences{folders.file(QStringLiteral("app-settings.json"))};
  PromptifyStore settings{folders.file(QStringLiteral("Promptify/settings.json"))};
  QString shortcut = QStringLiteral("⌃⌥P");
  PromptifyClient client{services.environments, http};
  PromptModePickerController modes{launcher, &SilentPanel::make};
  PromptifyResultController result{
      {pasteboard, clock, [](const QString& prompt) { return double(prompt.size()); }, &SilentPanel::make}};
};
