#include "tools/text_transform/ai_text_transform_tool.h"

#include <utility>

#include "base/visible_text.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kProgressToast = 120s;
constexpr auto kReplacedToast = 8s;
constexpr auto kFailureToast = 8s;
constexpr auto kNoPermissionToast = 6s;
constexpr auto kNoSelectionToast = 4s;
constexpr int kResultLines = 3;
/// Of a text in a toast.
constexpr qsizetype kShown = 300;

/// As much of a text as a toast has room for, its lines run into one.
QString excerpt(const QString& text) {
  // White space may be most of it, but no toast is worth looking at megabytes.
  const QString beginning = text.left(4 * kShown).simplified();
  return visibleLine(beginning.size() > kShown || text.size() <= 4 * kShown ? beginning : beginning + u'…', kShown);
}

}  // namespace

AITextTransformTool::AITextTransformTool(Services services, SettingsViewFactory settingsView)
    : Tool(toolInfo(kAITextTransformID), std::move(settingsView)),
      services_(std::move(services)),
      escape_(services_.keyTargets) {}

void AITextTransformTool::activate() {
  const bool startedFromLauncher = services_.launcher.takeStartedFromLauncher();
  // One start is enough, and a panel that asks is not to be disturbed by a second copy.
  if (stage_ == Stage::reading || stage_ == Stage::asking || stage_ == Stage::ended) return;
  if (!services_.permissions.isAccessibilityTrusted()) return showNoPermission();
  cancel();
  services_.picker.setReturnsToLauncher(startedFromLauncher);
  stage_ = Stage::reading;
  job_ = Job::start();
  services_.reader.readSelectedText(job_, job_.bind([this](const Selection& selection) { take(selection); }));
}

void AITextTransformTool::take(const Selection& selection) {
  selection_ = selection;
  if (selection_.text.value_or(QString()).trimmed().isEmpty()) {
    const QString obstacle = selection_.obstacle;
    giveUp();
    return obstacle.isEmpty() ? showNoSelection() : showNotCopied(obstacle);
  }
  stage_ = Stage::asking;
  services_.picker.choose(job_.bind([this](std::optional<TextTransformMode> mode) { chosen(mode); }));
}

void AITextTransformTool::chosen(std::optional<TextTransformMode> mode) {
  if (!mode) return giveUp();
  if (*mode != TextTransformMode::custom) return transform(*mode, {});
  services_.instruction.ask(job_.bind([this](const std::optional<QString>& instruction) {
    if (instruction)
      transform(TextTransformMode::custom, instruction);
    else
      giveUp();
  }));
}

void AITextTransformTool::transform(TextTransformMode mode, const std::optional<QString>& instruction) {
  stage_ = Stage::requesting;
  const QString ways = escape_.open(selection_.owner, [this] { cancel(); });
  services_.toasts.show({.icon = u"wand.and.stars"_s,
                         .tone = ToastTone::accent,
                         .title = u"Transforming…"_s,
                         .detail = ways,
                         .onTap = job_.bind([this] { cancel(); })},
                        kProgressToast);
  services_.client.transform({*selection_.text, mode, instruction}, job_,
                             job_.bind([this](const auto& result) { finish(result); }));
}

void AITextTransformTool::cancel() {
  if (stage_ != Stage::requesting && stage_ != Stage::placing) return;
  giveUp();
  services_.toasts.dismiss(true);
}

void AITextTransformTool::abandon() {
  job_.cancel();
  escape_.close();
  stage_ = Stage::ended;
  services_.replacer.restore(selection_);
}

Selection AITextTransformTool::end() {
  job_.cancel();
  escape_.close();
  stage_ = Stage::idle;
  return std::exchange(selection_, {});
}

void AITextTransformTool::giveUp() { services_.replacer.restore(end()); }

void AITextTransformTool::finish(const AITextTransformClient::Result& result) {
  if (!result) {
    giveUp();
    return showFailure(result.error());
  }
  if (services_.settings.value().output == TransformOutput::replace) return replace(*result);
  copy(*result, {});
}

void AITextTransformTool::replace(const QString& result) {
  using Outcome = SelectionReplacer::Outcome;
  stage_ = Stage::placing;
  services_.replacer.replace(selection_, result, job_, job_.bind([this, result](const auto& outcome) {
    if (!outcome) return copy(result, u"It could not be typed: %1. "_s.arg(outcome.error().description()));
    if (*outcome == Outcome::copied) return copy(result, u"It could not be typed there. "_s);
    showReplaced(result);
  }));
}

void AITextTransformTool::copy(const QString& result, const QString& remark) {
  end();
  const auto write = [&pasteboard = services_.pasteboard, result] { pasteboard.writeText(result); };
  write();
  services_.toasts.show({.icon = u"checkmark.circle.fill"_s,
                         .tone = ToastTone::success,
                         .title = u"Result copied to clipboard"_s,
                         .detail = remark + excerpt(result),
                         .detailLineLimit = kResultLines,
                         .completes = true,
                         .onTap = write},
                        toastDuration(services_.preferences.value()));
}

void AITextTransformTool::showReplaced(const QString& result) {
  end();
  services_.toasts.show({.icon = u"checkmark.circle.fill"_s,
                         .tone = ToastTone::success,
                         .title = u"Selection transformed"_s,
                         .detail = excerpt(result),
                         .detailLineLimit = kResultLines,
                         .completes = true},
                        kReplacedToast);
}

void AITextTransformTool::showFailure(const AITextTransformError& error) {
  services_.toasts.show({.icon = u"xmark.octagon.fill"_s,
                         .tone = ToastTone::failure,
                         .title = u"AI Text Transform failed"_s,
                         .detail = visibleLine(error.description().trimmed(), kShown),
                         .detailLineLimit = kResultLines},
                        kFailureToast);
}

void AITextTransformTool::showNoSelection() {
  const QString shortcut = services_.shortcut();
  const QString again = shortcut.isEmpty() ? u"start AI Text Transform again"_s : u"press "_s + shortcut;
  services_.toasts.show({.icon = u"text.cursor"_s,
                         .iconColor = QColorConstants::White,
                         .title = u"Select some text first"_s,
                         .detail = u"Highlight text in any app, then "_s + again},
                        kNoSelectionToast);
}

void AITextTransformTool::showNotCopied(const QString& obstacle) {
  services_.toasts.show({.icon = u"text.cursor"_s,
                         .iconColor = QColorConstants::White,
                         .title = u"The selection could not be copied"_s,
                         .detail = obstacle + u'.',
                         .detailLineLimit = kResultLines},
                        kFailureToast);
}

/// Where the system has no page of settings for it, what to do instead is the system's own sentence.
void AITextTransformTool::showNoPermission() {
  services_.permissions.promptForAccessibility();
  const bool hasPage = services_.permissions.hasSettingsPage(Permission::accessibility);
  const QString page = u"Enable Vantle in %1 → Privacy"_s.arg(services_.system.systemSettings());
  services_.toasts.show({.icon = u"lock.shield"_s,
                         .iconColor = QColorConstants::White,
                         .title = u"Accessibility permission needed"_s,
                         .detail = hasPage ? page : services_.permissions.remedy(Permission::accessibility)},
                        kNoPermissionToast);
}
