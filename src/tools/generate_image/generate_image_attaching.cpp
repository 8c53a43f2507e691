#include <QFileInfo>

#include "base/atomic_file.h"
#include "base/background.h"
#include "base/visible_text.h"
#include "capture/png_encoding.h"
#include "core/presenters/toast_presenter.h"
#include "tools/generate_image/generate_image_panel_controller.h"
#include "tools/generate_image/image_reference_reader.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kRefusalToast = 8s;
constexpr int kRefusalLines = 3;
constexpr qsizetype kShownPath = 200;

QString tooMany() { return u"At most %1 images go with a prompt."_s.arg(ImageRequest::kMostReferences); }

}  // namespace

void GenerateImagePanelController::addSnip() {
  if (!model_.canAttach()) return model_.setNotice(tooMany());
  snip(u"Add Snip"_s, u"plus.viewfinder"_s, Use::reference);
}

void GenerateImagePanelController::editSnip() { snip(u"Edit this snip"_s, u"wand.and.stars"_s, Use::edit); }

void GenerateImagePanelController::snip(const QString& label, const QString& icon, Use use) {
  if (services_.permissions.state(Permission::screenRecording) != PermissionState::granted) return refuseSnip();
  hide();
  isSnipping_ = true;
  snipping_ = Job::start();
  const auto selected = [this, use](const std::optional<QByteArray>& png) {
    isSnipping_ = false;
    if (!services_.regions.hasUserTurnedAway()) reshow();
    if (png) prepareReference([bytes = *png] { return bytes; }, use);
  };
  services_.regions.begin(label, icon, snipping_.bind(selected));
}

/// Where the system has no page of settings for it, what to do instead is the system's own sentence.
void GenerateImagePanelController::refuseSnip() {
  const bool hasPage = services_.permissions.hasSettingsPage(Permission::screenRecording);
  const QString text = u"Snipping needs the Screen Recording permission — grant it in %1, then relaunch Vantle."_s.arg(
      services_.system.systemSettings());
  services_.toasts.show({.icon = u"plus.viewfinder"_s,
                         .title = u"Screen Recording permission needed"_s,
                         .detail = hasPage ? text : services_.permissions.remedy(Permission::screenRecording),
                         .detailLineLimit = kRefusalLines},
                        kRefusalToast);
  if (hasPage) services_.permissions.openSettingsPage(Permission::screenRecording);
}

void GenerateImagePanelController::attachFiles() {
  if (!model_.canAttach()) return model_.setNotice(tooMany());
  // It would stand above the dialog, and have the keys.
  hide();
  snipping_ = Job::start();
  const auto chosen = [this](const QStringList& paths) {
    reshow();
    for (const QString& path : paths) prepareReference([path] { return imageFileContents(path); }, Use::reference);
  };
  services_.dialogs.chooseImages(snipping_.bind(chosen));
}

void GenerateImagePanelController::attach(const QList<QUrl>& urls) {
  for (const QUrl& url : urls)
    if (url.isLocalFile())
      prepareReference([path = url.toLocalFile()] { return imageFileContents(path); }, Use::reference);
}

void GenerateImagePanelController::attachImage(const QByteArray& bytes) {
  prepareReference([bytes] { return bytes; }, Use::reference);
}

void GenerateImagePanelController::attachPicture(const QImage& picture) {
  prepareReference([picture] { return pngWithTransparency(picture); }, Use::reference);
}

void GenerateImagePanelController::paste() {
  pasting_ = Job::start();
  images_.read(pasting_, [this](const std::optional<ClipboardImage>& image) {
    if (image)
      attachImage(image->data);
    else
      pasteText();
  });
}

void GenerateImagePanelController::pasteText() {
  if (!pasting_.isRunning()) pasting_ = Job::start();
  services_.pasteboard.readText(pasting_, [this](const std::optional<QString>& text) {
    if (text && !text->isEmpty()) Q_EMIT textPasted(*text);
  });
}

void GenerateImagePanelController::prepareReference(std::function<QByteArray()> bytes, Use use) {
  // More than may be are not even read.
  const bool isFull = model_.references().size() + static_cast<std::size_t>(reading_) >= ImageRequest::kMostReferences;
  if (use == Use::reference && isFull) return model_.setNotice(tooMany());
  ++reading_;
  const auto work = [bytes = std::move(bytes)](const std::stop_token& stop) {
    return stop.stop_requested() ? std::nullopt : preparedReference(bytes(), GenerateImageModel::kThumbnailEdge);
  };
  runInBackground(attaching_, work, [this, use](const auto& reference) { takeReference(reference, use); }, readers_);
}

void GenerateImagePanelController::takeReference(const std::optional<PreparedReference>& reference, Use use) {
  --reading_;
  if (!reference) {
    startsWhenRead_ = false;
    return model_.setNotice(u"That is not an image that can be read, or it is too large."_s);
  }
  if (use == Use::edit)
    model_.edit(reference->png, reference->thumbnail);
  else if (!model_.attach(reference->png, reference->thumbnail))
    model_.setNotice(tooMany());
  if (reading_ == 0 && std::exchange(startsWhenRead_, false)) generate();
}

void GenerateImagePanelController::stopReading() {
  startsWhenRead_ = false;
  attaching_ = Job::start();
  reading_ = 0;
}

void GenerateImagePanelController::restoreReferences(const ImageRequest& request) {
  if (request.references.empty()) return;
  stopReading();
  model_.removeReferences();
  Use use = request.isEdit ? Use::edit : Use::reference;
  for (const QByteArray& png : request.references)
    prepareReference([png] { return png; }, std::exchange(use, Use::reference));
}

void GenerateImagePanelController::save(const QString& path, const QByteArray& png) {
  const auto work = [path, png](const std::stop_token&) { return replaceFileAtomically(path, png); };
  runInBackground(saving_, work, [this, path](const std::expected<void, FileError>& saved) {
    if (!saved) return model_.setError(u"Not saved: %1"_s.arg(saved.error().reason));
    model_.setNotice(u"Saved as %1"_s.arg(visibleLine(QFileInfo(path).fileName(), kShownPath)));
  });
}
