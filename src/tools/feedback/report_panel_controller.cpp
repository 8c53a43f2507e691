#include "tools/feedback/report_panel_controller.h"

#include "base/visible_text.h"
#include "core/presenters/launcher_opener.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

using Phase = ReportModel::Phase;

namespace {

constexpr auto kToast = 4s;
constexpr auto kFailureToast = 8s;
/// Of what the service says.
constexpr qsizetype kShown = 300;

constexpr std::uint32_t kS = 1;
constexpr std::uint32_t kN = 45;

}  // namespace

ReportPanelController::ReportPanelController(Services services, PanelFactory makePanel)
    : services_(services), copied_(services.pasteboard), makePanel_(std::move(makePanel)) {}

PalettePresenter& ReportPanelController::panel() {
  if (!panel_) panel_ = makePanel_();
  return *panel_;
}

void ReportPanelController::prepare() {
  if (!panel_) panel().warmUp();
}

void ReportPanelController::toggle() {
  const bool isFromLauncher = services_.launcher.takeStartedFromLauncher();
  // It comes back by itself when the region is drawn.
  if (snipping_.isRunning()) return;
  if (shown_) return hide();
  returnsToLauncher_ = isFromLauncher;
  show();
}

void ReportPanelController::show() {
  if (model().phase() == Phase::sent) model().reset();
  shown_ = true;
  panel().present();
}

void ReportPanelController::hide() {
  if (!shown_) return;
  shown_ = false;
  panel().dismiss();
}

void ReportPanelController::escape() {
  if (model().phase() == Phase::sending) {
    sending_.cancel();
    model().fail(u"Cancelled before it was sent"_s);
  }
  hide();
  if (returnsToLauncher_) services_.launcher.showLauncher(toolID());
}

void ReportPanelController::addSnip() {
  if (!model().canAddSnip() || snipping_.isRunning()) return;
  if (!services_.regions.isAllowed({.icon = u"rectangle.dashed.badge.record"_s})) return;
  snipping_ = Job::start();
  panel().dismiss();
  services_.regions.pick(u"Add Snip"_s, u"plus.viewfinder"_s, snipping_, [this](const auto& png) {
    snipping_.cancel();
    if (png) model().addSnip(*png);
    shown_ = !services_.regions.hasUserTurnedAway();
    if (shown_) panel().present();
  });
}

void ReportPanelController::take(const std::optional<ClipboardImage>& image) {
  if (image) model().addSnip(image->data);
}

void ReportPanelController::pasteSnip() {
  pasting_ = Job::start();
  copied_.read(pasting_, [this](const auto& image) { take(image); });
}

void ReportPanelController::dropSnips(std::vector<PasteboardData> dropped) {
  // Ended first: what is under way reads from these.
  dropping_ = Job::start();
  drops_.clear();
  for (PasteboardData& data : dropped) {
    if (drops_.size() == ReportModel::kMostSnips) return;
    drops_.emplace_back(std::move(data)).readImage(dropping_, [this](const auto& image) { take(image); });
  }
}

void ReportPanelController::stopAttaching() {
  pasting_.cancel();
  dropping_.cancel();
  drops_.clear();
}

void ReportPanelController::submit() {
  if (!model().canSubmit()) return;
  stopAttaching();
  sending_ = Job::start();
  model().startSending();
  send(sending_, [this](const std::expected<void, ReportError>& sent) { finish(sent); });
}

void ReportPanelController::finish(const std::expected<void, ReportError>& sent) {
  sending_.cancel();
  if (sent)
    model().finish();
  else
    model().fail(visibleLine(sent.error().description(), kShown));
  if (!shown_) tellWhileHidden();
}

void ReportPanelController::tellWhileHidden() {
  if (model().phase() == Phase::sent)
    services_.toasts.show({.icon = u"checkmark.circle.fill"_s, .title = texts().thanks}, kToast);
  else
    services_.toasts.show(
        {.icon = u"exclamationmark.triangle.fill"_s, .title = u"Not sent"_s, .detail = model().error()}, kFailureToast);
}

void ReportPanelController::startOver() {
  if (model().phase() == Phase::sending) return;
  stopAttaching();
  model().reset();
}

std::vector<QByteArray> ReportPanelController::snips() {
  std::vector<QByteArray> all;
  for (const FeedbackSnip& snip : model().snips()) all.push_back(snip.png);
  return all;
}

bool ReportPanelController::handleKey(const KeyPress& key) {
  if (!shown_ || snipping_.isRunning()) return false;
  if (key.keyCode == keycode::kEscape) {
    escape();
    return true;
  }
  return handleOwnKey(key) || (key.command && handleCommand(key));
}

bool ReportPanelController::handleCommand(const KeyPress& key) {
  if (key.keyCode == keycode::kReturn || key.keyCode == keycode::kKeypadEnter)
    submit();
  else if (key.isKey(u's', kS) && key.shift && !model().snips().empty())
    model().removeSnip(model().snips().back().id);
  else if (key.isKey(u's', kS))
    addSnip();
  else if (key.isKey(u'n', kN))
    startOver();
  else
    return false;
  return true;
}
