#include "tools/image_to_prompt/promptify_tool.h"

#include "base/background.h"
#include "base/visible_text.h"
#include "capture/image_decoding.h"
#include "core/presenters/launcher_opener.h"
#include "tools/image_to_prompt/prompt_mode_picker_controller.h"
#include "tools/image_to_prompt/promptify_result_controller.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// The outcome takes its place long before.
constexpr auto kWorkToast = 180s;
constexpr auto kFailureToast = 8s;
/// Of what the service says; a toast shows less.
constexpr qsizetype kShown = 300;
/// As large as the card draws it, on every screen.
constexpr QSize kThumbnail(192, 192);

QImage thumbnail(const QByteArray& bytes) {
  const QImage image = decodedImage(bytes);
  return image.isNull() ? image : image.scaled(kThumbnail, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

}  // namespace

PromptifyTool::PromptifyTool(Services services, SettingsViewFactory settingsView)
    : Tool(toolInfo(kPromptifyID), std::move(settingsView)),
      services_(std::move(services)),
      escape_(services_.keyTargets) {}

void PromptifyTool::activate() {
  // The question before is about another image.
  services_.modes.cancel();
  services_.modes.setReturnsToLauncher(services_.launcher.takeStartedFromLauncher());
  // Its toast would tell of work that nobody does any more.
  cancel();
  startedIn_ = escape_.here();
  task_ = Job::start();
  services_.images.pick(services_.settings.value().source, task_, [this](const auto& image) {
    if (image)
      chooseMode(*image);
    else
      task_.cancel();
  });
}

void PromptifyTool::chooseMode(const ClipboardImage& image) {
  if (const auto mode = modeOf(services_.settings.value().style)) return process(image, *mode);
  services_.modes.chooseMode(JobRef(task_).bind([this, image](std::optional<PromptMode> mode) {
    if (mode)
      process(image, *mode);
    else
      task_.cancel();
  }));
}

void PromptifyTool::process(const ClipboardImage& image, PromptMode mode) {
  task_ = Job::start();
  services_.toasts.show({.icon = u"wand.and.stars"_s,
                         .tone = ToastTone::accent,
                         .title = u"Generating %1 prompt…"_s.arg(QString(info(mode).label).toLower()),
                         .detail = escape_.open(startedIn_, [this] { cancel(); }),
                         .onTap = task_.bind([this] { cancel(); })},
                        kWorkToast);
  services_.client.reverseEngineer(image, mode, task_, [this, image, mode](const auto& prompt) {
    if (!prompt) return fail(prompt.error());
    runInBackground(
        task_, [bytes = image.data](const std::stop_token&) { return thumbnail(bytes); },
        [this, text = *prompt, mode](const QImage& source) { finish(source, text, mode); });
  });
}

void PromptifyTool::cancel() {
  if (!task_.isRunning()) return;
  end();
  services_.toasts.dismiss(true);
}

void PromptifyTool::end() {
  task_.cancel();
  escape_.close();
}

void PromptifyTool::finish(const QImage& source, const QString& prompt, PromptMode mode) {
  end();
  services_.toasts.dismiss(true);
  if (services_.preferences.value().soundOnComplete) services_.sounds.playCompletion();
  services_.result.show(prompt, source, info(mode).label);
}

void PromptifyTool::fail(const PromptifyError& error) {
  end();
  services_.toasts.show({.icon = u"xmark.octagon.fill"_s,
                         .tone = ToastTone::failure,
                         .title = u"Image to Prompt failed"_s,
                         .detail = visibleLine(error.description(), kShown)},
                        kFailureToast);
}
