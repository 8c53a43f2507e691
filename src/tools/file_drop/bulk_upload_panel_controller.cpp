#include "tools/file_drop/bulk_upload_panel_controller.h"

#include "base/background.h"
#include "core/presenters/launcher_opener.h"
#include "core/presenters/toast_presenter.h"
#include "platform/pasteboard.h"
#include "tools/file_drop/bulk_upload_client.h"
#include "tools/file_drop/file_drop_tool.h"

using namespace Qt::StringLiterals;

using Phase = BulkUploadModel::Phase;

namespace {

/// A line each; what begins with "#" is a remark.
QList<QUrl> urlsIn(const QByteArray& list) {
  QList<QUrl> urls;
  for (const QByteArray& line : list.split('\n'))
    if (const QByteArray text = line.trimmed(); !text.isEmpty() && !text.startsWith('#'))
      urls.append(QUrl(QString::fromUtf8(text)));
  return urls;
}

}  // namespace

BulkUploadPanelController::BulkUploadPanelController(Services services, PanelFactory makePanel)
    : services_(std::move(services)), makePanel_(std::move(makePanel)) {}

PalettePresenter& BulkUploadPanelController::panel() {
  if (!panel_) panel_ = makePanel_();
  return *panel_;
}

void BulkUploadPanelController::prepare() {
  if (!panel_) panel().warmUp();
}

void BulkUploadPanelController::show() {
  returnsToLauncher_ = services_.launcher.takeStartedFromLauncher();
  if (!shown_ && model_.phase() == Phase::done) model_.reset();
  if (!shown_) services_.client.removeLeftovers();
  shown_ = true;
  panel().present();
}

void BulkUploadPanelController::hide() {
  if (!shown_) return;
  shown_ = false;
  panel_->dismiss();
}

void BulkUploadPanelController::add(const QList<QUrl>& urls) {
  if (const QStringList fresh = model_.add(urls); !fresh.isEmpty()) measure(fresh);
}

void BulkUploadPanelController::paste() {
  if (model_.isBusy()) return;
  pasting_ = Job::start();
  services_.pasteboard.read({PasteboardFormat::fileURLs}, pasting_, [this](const auto& held) {
    if (held) add(urlsIn(held->bytes));
  });
}

void BulkUploadPanelController::choose(Choice choice) {
  if (model_.isBusy()) return;
  // It would stand above the dialog, and have the keys.
  hide();
  services_.choose(choice, [this](const QList<QUrl>& urls) {
    add(urls);
    shown_ = true;
    panel().present();
  });
}

void BulkUploadPanelController::measure(const QStringList& paths) {
  if (!measuring_.isRunning()) measuring_ = Job::start();
  const auto work = [paths](const std::stop_token& stop) {
    std::vector<DroppedItem> items;
    for (const QString& path : paths) {
      if (stop.stop_requested()) break;
      items.push_back(measured(path, stop));
    }
    return items;
  };
  runInBackground(measuring_, work, [this](const std::vector<DroppedItem>& items) { takeMeasured(items); });
}

void BulkUploadPanelController::takeMeasured(const std::vector<DroppedItem>& items) {
  model_.takeMeasured(items);
  if (startsWhenMeasured_ && !model_.isMeasuring() && model_.rowCount() > 0) start();
}

void BulkUploadPanelController::upload() {
  if (model_.phase() != Phase::collecting || model_.rowCount() == 0) return;
  startsWhenMeasured_ = true;
  if (!model_.isMeasuring()) start();
}

void BulkUploadPanelController::start() {
  startsWhenMeasured_ = false;
  upload_ = Job::start();
  const BulkUploadClient::Observer observer{[this](double progress) { model_.showZipping(progress); },
                                            [this](double progress) { model_.showUploading(progress); }};
  services_.client.upload(model_.items(), upload_, observer, [this](const BulkUploadClient::Outcome& outcome) {
    if (outcome)
      finish(*outcome);
    else
      model_.fail(outcome.error());
  });
}

void BulkUploadPanelController::finish(const QUrl& link) {
  model_.finish(link);
  copyResult();
  services_.toasts.show(
      {.icon = u"checkmark.circle.fill"_s, .title = u"Archive link copied to clipboard"_s, .completes = true},
      toastDuration(services_.preferences.value()));
}

void BulkUploadPanelController::copyResult() {
  if (model_.phase() != Phase::done) return;
  services_.pasteboard.writeText(model_.link().toString(QUrl::FullyEncoded));
  model_.setCopied();
}

void BulkUploadPanelController::cancel() {
  if (!model_.isBusy()) return;
  upload_.cancel();
  model_.backToList();
}

void BulkUploadPanelController::reset() {
  if (model_.isBusy()) return;
  startsWhenMeasured_ = false;
  measuring_.cancel();
  model_.reset();
}

void BulkUploadPanelController::perform(BulkUploadModel::ResultAction action) {
  switch (action) {
    case BulkUploadModel::ResultAction::copyLink:
      return copyResult();
    case BulkUploadModel::ResultAction::tryAgain:
      return tryAgain();
    case BulkUploadModel::ResultAction::startOver:
      return reset();
  }
}

/// The items may have changed meanwhile. Where something is wrong with them, the user has to look at them first.
void BulkUploadPanelController::tryAgain() {
  if (model_.phase() != Phase::failed) return;
  startsWhenMeasured_ = !model_.error()->isAboutItems();
  model_.backToList();
  measuring_ = Job::start();
  measure(model_.forgetMeasures());
}

void BulkUploadPanelController::escape() {
  if (model_.isBusy()) return cancel();
  if (startsWhenMeasured_) {
    startsWhenMeasured_ = false;
    return;
  }
  hide();
  if (returnsToLauncher_) services_.launcher.showLauncher(kBulkUploadID);
}

bool BulkUploadPanelController::handleKey(const KeyPress& key) {
  if (!shown_) return false;
  if (key.keyCode == keycode::kEscape) {
    escape();
    return true;
  }
  if (model_.isBusy()) return false;
  if (key.command) return handleCommand(key);
  return model_.phase() == Phase::collecting ? handleListKey(key) : handleResultKey(key);
}

bool BulkUploadPanelController::handleCommand(const KeyPress& key) {
  const bool isDelete = key.keyCode == keycode::kDelete || key.keyCode == keycode::kForwardDelete;
  if (key.isKey(u'v', keycode::kV))
    paste();
  else if (key.isKey(u'o', keycode::kO))
    choose(key.shift ? Choice::folder : Choice::files);
  else if (isDelete)
    reset();
  else
    return false;
  return true;
}

bool BulkUploadPanelController::handleListKey(const KeyPress& key) {
  switch (key.keyCode) {
    case keycode::kUp:
      model_.moveSelection(-1);
      return true;
    case keycode::kDown:
      model_.moveSelection(+1);
      return true;
    case keycode::kDelete:
    case keycode::kForwardDelete:
      model_.removeSelected();
      return true;
    case keycode::kReturn:
    case keycode::kKeypadEnter:
      upload();
      return true;
    default:
      return false;
  }
}

bool BulkUploadPanelController::handleResultKey(const KeyPress& key) {
  switch (key.keyCode) {
    case keycode::kLeft:
      model_.selectResultButton(model_.resultButtonIndex() - 1);
      return true;
    case keycode::kRight:
      model_.selectResultButton(model_.resultButtonIndex() + 1);
      return true;
    case keycode::kReturn:
    case keycode::kKeypadEnter:
      perform(model_.resultActions()[static_cast<std::size_t>(model_.resultButtonIndex())]);
      return true;
    default:
      return false;
  }
}
