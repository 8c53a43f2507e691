#include "tools/generate_image/generate_image_panel_controller.h"

#include <algorithm>

#include "base/background.h"
#include "base/clock.h"
#include "base/visible_text.h"
#include "core/presenters/launcher_opener.h"
#include "core/presenters/toast_presenter.h"
#include "tools/generate_image/generate_image_tool.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

using Area = GenerateImageModel::Area;

namespace {

constexpr auto kFailureToast = 8s;
/// Of what the service says.
constexpr qsizetype kShown = 300;

QDateTime timeOf(const Clock& clock) {
  const auto now = std::chrono::duration_cast<std::chrono::milliseconds>(clock.now());
  return QDateTime::fromMSecsSinceEpoch(now.count(), Qt::UTC);
}

/// Many services end what they say with a line break.
QString shownText(const GenerateImageError& error) { return visibleLine(error.description().trimmed(), kShown); }

/// The choice after `value`, after the last the first.
template <class Value>
Value following(std::span<const ImageChoice<Value>> choices, Value value) {
  const auto row = std::ranges::find(choices, value, &ImageChoice<Value>::value);
  return row + 1 == choices.end() ? choices.front().value : (row + 1)->value;
}

}  // namespace

GenerateImagePanelController::GenerateImagePanelController(Services services, PanelFactory makePanel)
    : services_(std::move(services)),
      makePanel_(std::move(makePanel)),
      historyList_(services_.history),
      images_(services_.pasteboard),
      attaching_(Job::start()) {
  readers_.setMaxThreadCount(1);
  const auto follow = [this] {
    model_.setOptions(services_.settings.value().options);
    services_.history.setLimit(services_.settings.value().historyLimit());
  };
  connect(&services_.settings, &StoreBase::changed, this, follow);
  follow();
  connect(&services_.history, &ImageHistory::failed, this, [this](const QString& reason) {
    model_.setError(u"The image could not be kept in the history: %1. Save it to keep it."_s.arg(reason));
  });
  // Its file is gone, whoever has deleted it.
  connect(&services_.history, &ImageHistory::changed, this, [this] {
    const QString& id = model_.selectedID();
    if (!id.isEmpty() && !services_.history.find(id)) model_.select({});
  });
}

PalettePresenter& GenerateImagePanelController::panel() {
  if (!panel_) panel_ = makePanel_();
  return *panel_;
}

void GenerateImagePanelController::prepare() {
  if (!panel_) panel().warmUp();
}

void GenerateImagePanelController::show() {
  // It would stand above what the user is selecting, and comes back by itself.
  if (isSnipping_) return;
  returnsToLauncher_ = services_.launcher.takeStartedFromLauncher();
  services_.history.load();
  reshow();
}

void GenerateImagePanelController::reshow() {
  isShown_ = true;
  panel().present();
}

void GenerateImagePanelController::hide() {
  if (!isShown_) return;
  isShown_ = false;
  panel_->dismiss();
}

void GenerateImagePanelController::toggle() {
  if (isShown_)
    hide();
  else
    show();
}

// Making

void GenerateImagePanelController::generate() {
  if (reading_ > 0) {
    startsWhenRead_ = true;
    return;
  }
  ImageRequest request = model_.request();
  if (request.prompt.isEmpty())
    model_.setNotice(request.isEdit ? u"Say what should change first."_s : u"Describe the image first."_s);
  else
    start(std::move(request));
}

void GenerateImagePanelController::start(ImageRequest request) {
  generation_ = Job::start();
  model_.start(services_.clock.monotonic());
  services_.client.generate(request, generation_, [this, request](const auto& outcome) { finish(request, outcome); });
}

void GenerateImagePanelController::finish(const ImageRequest& request, const GenerateImageClient::Outcome& outcome) {
  generation_.cancel();
  if (outcome)
    keep(request, *outcome);
  else
    model_.fail(shownText(outcome.error()));
  if (!isShown_) announce(outcome);
}

void GenerateImagePanelController::keep(const ImageRequest& request, const GeneratedImage& image) {
  const HistoryEntry entry = entryOf(request, timeOf(services_.clock));
  services_.history.add(entry, image, request.references);
  // What was about to be shown of the history is not what is selected now.
  opening_.cancel();
  model_.finish({image, request, false, entry.id});
}

/// For a user who looks elsewhere.
void GenerateImagePanelController::announce(const GenerateImageClient::Outcome& outcome) {
  const auto open = [this] { show(); };
  if (!outcome) {
    services_.toasts.show({.icon = u"exclamationmark.triangle.fill"_s,
                           .title = u"Image not generated"_s,
                           .detail = shownText(outcome.error()),
                           .onTap = open},
                          kFailureToast);
    return;
  }
  services_.toasts.show({.icon = u"checkmark.circle.fill"_s,
                         .title = u"Your image is ready"_s,
                         .detail = u"Click here to see it."_s,
                         .completes = true,
                         .thumbnail = outcome->picture,
                         .onTap = open},
                        toastDuration(services_.preferences.value()));
}

void GenerateImagePanelController::cancel() {
  startsWhenRead_ = false;
  if (!model_.isGenerating()) return;
  generation_.cancel();
  model_.stop();
}

void GenerateImagePanelController::regenerate() {
  const auto& shown = model_.shown();
  if (!shown) return generate();
  if (!shown->lacksReferences) return start(shown->request);
  reusePrompt();
}

void GenerateImagePanelController::editShown() {
  if (!model_.shown()) return;
  const ShownImage shown = *model_.shown();
  if (model_.prompt().trimmed() == shown.request.prompt) model_.setPrompt({});
  prepareReference([png = shown.image.png]() -> QByteArray { return png; }, Use::edit);
}

void GenerateImagePanelController::startNew() {
  generation_.cancel();
  opening_.cancel();
  pasting_.cancel();
  stopReading();
  model_.clear();
}

void GenerateImagePanelController::setOptions(const ImageOptions& options) {
  services_.settings.update([&](GenerateImageSettings& settings) { settings.options = options; });
}

void GenerateImagePanelController::nextSize() {
  ImageOptions options = model_.options();
  options.size = following(imageSizes(), options.size);
  setOptions(options);
}

void GenerateImagePanelController::nextQuality() {
  ImageOptions options = model_.options();
  options.quality = following(imageQualities(), options.quality);
  setOptions(options);
}

// What is shown

void GenerateImagePanelController::copyShown() {
  if (!model_.shown()) return;
  services_.pasteboard.writeImage(model_.shown()->image.png);
  model_.setNotice(u"Image copied to clipboard"_s);
}

void GenerateImagePanelController::saveShown() {
  if (!model_.shown()) return;
  // It would stand above the dialog, and have the keys.
  hide();
  saving_ = Job::start();
  // Another picture may be shown, or none, by the time that a place is chosen.
  const auto chosen = [this, png = model_.shown()->image.png](const QString& path) {
    reshow();
    if (!path.isEmpty()) save(path, png);
  };
  services_.dialogs.chooseDestination(suggestedFileName(model_.shown()->request.prompt), saving_.bind(chosen));
}

void GenerateImagePanelController::openHistory(int row) {
  const QString id = historyList_.idAt(row);
  const HistoryEntry* entry = services_.history.find(id);
  if (!entry) return;
  model_.setArea(Area::history);
  model_.select(id);
  opening_ = Job::start();
  if (model_.shown() && model_.shown()->historyID == id) return;
  services_.history.open(*entry, opening_, [id, this](const std::optional<KeptImage>& kept) {
    if (kept)
      model_.show({kept->image, kept->request, kept->lacksReferences, id});
    else
      model_.miss(u"This image cannot be read any more."_s);
  });
}

void GenerateImagePanelController::moveInHistory(int delta) {
  const int last = historyList_.rowCount() - 1;
  const int row = historyList_.rowOf(model_.selectedID());
  openHistory(row < 0 ? 0 : std::clamp(row + delta, 0, last));
}

void GenerateImagePanelController::reusePrompt() {
  if (!model_.shown()) return;
  const ShownImage shown = *model_.shown();
  setOptions(shown.request.options);
  model_.setPrompt(shown.request.prompt);
  model_.setArea(Area::prompt);
  restoreReferences(shown.request);
  if (shown.lacksReferences) model_.setNotice(u"Its reference images are not there any more: attach them anew."_s);
}

void GenerateImagePanelController::removeSelected() {
  const QString id = model_.selectedID();
  const int row = historyList_.rowOf(id);
  if (row < 0) return;
  if (!model_.isDeletionAsked()) return model_.setDeletionAsked(true);
  if (model_.shown() && model_.shown()->historyID == id) model_.hideShown();
  services_.history.remove(id);
  if (historyList_.rowCount() > 0)
    openHistory(std::min(row, historyList_.rowCount() - 1));
  else
    model_.setArea(Area::prompt);
}

void GenerateImagePanelController::escape() {
  if (model_.isDeletionAsked()) return model_.setDeletionAsked(false);
  if (model_.area() != Area::prompt) return model_.setArea(Area::prompt);
  if (model_.isGenerating() || startsWhenRead_) return cancel();
  hide();
  if (returnsToLauncher_) services_.launcher.showLauncher(kGenerateImageID);
}
