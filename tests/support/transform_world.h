#pragma once

#include "support/fake_palette.h"
#include "support/fake_platform.h"
#include "support/fake_presenters.h"
#include "support/fake_selection.h"
#include "support/service_world.h"
#include "tools/text_transform/ai_text_transform_tool.h"

/// AI Text Transform over fakes; `client` sends its requests.
struct TransformWorld : ServiceWorld {
  explicit TransformWorld(HttpClient* client = nullptr)
      : real(folders, client ? *client : http, vault, builtIn, clock), transforms(real) {}

  /// Something is selected, and copying it has displaced what the clipboard held.
  void select(const QString& text) {
    reader.selection = {text, std::make_shared<const PasteboardContents>(earlier), KeyTarget{7}};
  }
  void useReplace() {
    settings.update([](AITextTransformSettings& values) { values.output = TransformOutput::replace; });
  }
  std::unique_ptr<AITextTransformTool> makeTool(Permissions& chosen) {
    const auto display = [this] { return shortcut; };
    return std::make_unique<AITextTransformTool>(
        AITextTransformTool::Services{settings, transforms, reader, replacer, picker, instruction, pasteboard, targets,
                                      chosen, system, toasts, preferences, launcher, display},
        SettingsViewFactory());
  }
  /// "title|detail|seconds" of the toast that is up.
  QString toast() const {
    if (toasts.shown.empty()) return {};
    const auto& [content, duration] = toasts.shown.back();
    return QStringLiteral("%1|%2|%3").arg(content.title, content.detail).arg(duration.count() / 1000);
  }

  const PasteboardContents earlier{{{.name = QStringLiteral("text/plain"), .bytes = "before"}}};
  FakeSelectionReader reader;
  FakeSelectionReplacer replacer;
  FakePasteboard pasteboard;
  FakeKeyTargets targets;
  FakePermissions permissions;
  FakeSystem system;
  FakeToasts toasts;
  FakeLauncherOpener launcher;
  AppPreferences preferences{folders.file(QStringLiteral("app-settings.json"))};
  AITextTransformStore settings{folders.file(QStringLiteral("AITextTransform/settings.json"))};
  QString shortcut = QStringLiteral("⌃⌥\\");
  TextModePickerController picker{launcher, SilentPanel::make};
  CustomInstructionController instruction{SilentPanel::make};
  Services real;
  AITextTransformClient transforms;
};
