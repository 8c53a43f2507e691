#include "tools/ask_ai/quick_question_panel_controller.h"

#include "base/background.h"
#include "core/presenters/launcher_opener.h"
#include "tools/ask_ai/quick_question_tool.h"

using namespace Qt::StringLiterals;

QuickQuestionPanelController::QuickQuestionPanelController(Services services, PanelFactory makePanel)
    : services_(std::move(services)),
      makePanel_(std::move(makePanel)),
      images_(services_.pasteboard),
      conversation_(model_, {services_.pasteboard, services_.clock},
                    [this](const AskQuestion& question, const AskCall& call) {
                      services_.client.ask(question, model_.images(), call);
                    }) {}

PalettePresenter& QuickQuestionPanelController::panel() {
  if (!panel_) panel_ = makePanel_();
  return *panel_;
}

void QuickQuestionPanelController::prepare() {
  if (!panel_) panel().warmUp();
}

void QuickQuestionPanelController::toggle() {
  if (shown_)
    hide();
  else if (!suspendAutoHide_)
    show();
  else if (!isSnipping_)
    comeBack();
}

void QuickQuestionPanelController::show() {
  returnsToLauncher_ = services_.launcher.takeStartedFromLauncher();
  shown_ = true;
  panel().present();
}

void QuickQuestionPanelController::hide() {
  if (!shown_) return;
  shown_ = false;
  panel_->dismiss();
}

void QuickQuestionPanelController::lostKeyboard() {
  if (!suspendAutoHide_) hide();
}

void QuickQuestionPanelController::stepAside() {
  suspendAutoHide_ = true;
  hide();
  away_ = Job::start();
}

void QuickQuestionPanelController::comeBack() {
  suspendAutoHide_ = false;
  shown_ = true;
  panel().present();
}

void QuickQuestionPanelController::submit() {
  if (attachmentsUnderWay_ == 0) return conversation_.submit();
  submitsWhenAttached_ = conversation_.canSubmit();
}

void QuickQuestionPanelController::escapeBack() {
  submitsWhenAttached_ = false;
  conversation_.cancel();
  hide();
  if (std::exchange(returnsToLauncher_, false)) services_.launcher.showLauncher(kQuickQuestionID);
}

void QuickQuestionPanelController::startOver() {
  endAttaching();
  conversation_.startOver();
}

void QuickQuestionPanelController::endAttaching() {
  attaching_.cancel();
  attachmentsUnderWay_ = 0;
  submitsWhenAttached_ = false;
}

void QuickQuestionPanelController::addSnip() {
  if (!model_.canAttach()) return;
  if (services_.permissions.state(Permission::screenRecording) != PermissionState::granted) return showNoPermission();
  stepAside();
  isSnipping_ = true;
  services_.regions.begin(u"Snip for Ask AI"_s, u"questionmark.bubble"_s,
                          away_.bind([this](const std::optional<QByteArray>& png) { takeSnip(png); }));
}

void QuickQuestionPanelController::takeSnip(const std::optional<QByteArray>& png) {
  isSnipping_ = false;
  // Where the user has turned elsewhere, the next shortcut brings the panel back with what was snipped.
  suspendAutoHide_ = false;
  if (!services_.regions.hasUserTurnedAway()) comeBack();
  if (png) attach([png = *png] { return Made{attachmentOf(png)}; });
}

void QuickQuestionPanelController::showNoPermission() {
  services_.permissions.request(Permission::screenRecording);
  const bool hasPage = services_.permissions.hasSettingsPage(Permission::screenRecording);
  model_.setErrorMessage(
      hasPage ? u"Snipping needs the Screen Recording permission — grant it in %1, then relaunch Vantle."_s.arg(
                    services_.system.systemSettings())
              : services_.permissions.remedy(Permission::screenRecording));
}

void QuickQuestionPanelController::attachFile() {
  if (!model_.canAttach()) return;
  stepAside();
  services_.choose(away_.bind([this](const QList<QUrl>& urls) {
    comeBack();
    attachFiles(urls);
  }));
}

void QuickQuestionPanelController::attachFiles(const QList<QUrl>& urls) {
  const std::size_t room = QuickQuestionModel::kMostAttachments - model_.attachments().size();
  QStringList paths;
  for (const QUrl& url : urls)
    if (url.isLocalFile() && paths.size() < static_cast<qsizetype>(room)) paths.append(url.toLocalFile());
  if (paths.isEmpty()) return;
  attach([paths] {
    Made made;
    for (const QString& path : paths) made.push_back(attachmentOfFile(path));
    return made;
  });
}

void QuickQuestionPanelController::attachImage(const QImage& image) {
  attach([image] { return Made{attachmentOf(image)}; });
}

bool QuickQuestionPanelController::pasteImage() {
  if (!model_.canAttach()) return false;
  if (!attaching_.isRunning()) attaching_ = Job::start();
  ++attachmentsUnderWay_;
  Q_EMIT pasting();
  images_.read(attaching_, [this](const auto& image) {
    if (!image) return pasteText();
    attach([png = image->data] { return Made{attachmentOf(png)}; });
    settle();
  });
  return true;
}

void QuickQuestionPanelController::pasteText() {
  services_.pasteboard.readText(attaching_, [this](const std::optional<QString>& text) {
    if (text) Q_EMIT textPasted(*text);
    settle();
  });
}

/// One of what is under way has ended; a question that waited for the last of them is asked.
void QuickQuestionPanelController::settle() {
  if (--attachmentsUnderWay_ == 0 && std::exchange(submitsWhenAttached_, false)) conversation_.submit();
}

template <class Make>
void QuickQuestionPanelController::attach(Make make) {
  if (!model_.canAttach()) return;
  if (!attaching_.isRunning()) attaching_ = Job::start();
  ++attachmentsUnderWay_;
  runInBackground(
      attaching_, [make = std::move(make)](const std::stop_token&) { return make(); },
      [this](Made made) { take(std::move(made)); });
}

void QuickQuestionPanelController::take(Made made) {
  for (MadeAttachment& one : made) {
    if (one) {
      model_.attach(std::move(*one));
      continue;
    }
    // The user has to look at this first.
    submitsWhenAttached_ = false;
    model_.setErrorMessage(one.error());
  }
  settle();
}

bool QuickQuestionPanelController::handleKey(const KeyPress& key) {
  if (!shown_) return false;
  if (key.keyCode == keycode::kEscape) {
    escapeBack();
    return true;
  }
  if (key.isCommand(u's', keycode::kS)) {
    addSnip();
    return true;
  }
  if (key.isCommand(u'n', keycode::kN)) {
    startOver();
    return true;
  }
  if (key.isCommand(u'c', keycode::kC)) return copyLatestAnswer();
  return key.isCommand(u'v', keycode::kV) && pasteImage();
}
