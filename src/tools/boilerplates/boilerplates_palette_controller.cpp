#include "tools/boilerplates/boilerplates_palette_controller.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>

#include "base/background.h"
#include "base/visible_text.h"
#include "core/presenters/settings_opener.h"
#include "core/presenters/toast_presenter.h"
#include "tools/boilerplates/boilerplates_tool.h"
#include "tools/projects/project_folders.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kCreatedToast = 4s;
constexpr auto kFailedToast = 8s;
/// More would have to be searched for.
constexpr qsizetype kPlaces = 12;
constexpr int kShown = 200;

/// Where the last project was made, where the recent ones are, and the home folder.
QStringList places(const QString& last, const std::vector<ProjectFolder>& projects) {
  QStringList candidates{last};
  for (const ProjectFolder& project : projects) candidates.append(QFileInfo(project.path).path());
  candidates.append(QDir::homePath());
  QStringList places;
  for (const QString& candidate : candidates) {
    const bool isNew = !candidate.isEmpty() && !places.contains(candidate) && places.size() < kPlaces;
    if (isNew && QFileInfo(candidate).isDir()) places.append(candidate);
  }
  return places;
}

QString describe(const CopyProgress& progress) {
  if (progress.totalFiles == 0) return u"Looking through the template…"_s;
  const QLocale locale;
  return u"Copying %1 of %2 files, %3 of %4…"_s.arg(locale.toString(static_cast<qlonglong>(progress.files)),
                                                    locale.toString(static_cast<qlonglong>(progress.totalFiles)),
                                                    locale.formattedDataSize(progress.bytes),
                                                    locale.formattedDataSize(progress.totalBytes));
}

QString describe(const MadeProject& made) {
  const QString path = visibleLine(made.path, kShown);
  const qsizetype skipped = made.skipped.size();
  return skipped == 0 ? path : u"%1, without %2 that cannot be copied (pipes, sockets)"_s.arg(path).arg(skipped);
}

}  // namespace

BoilerplatesPaletteController::BoilerplatesPaletteController(Services services, PanelFactory makePanel)
    : PaletteController(services.launcher, kBoilerplatesID, std::move(makePanel)), services_(std::move(services)) {}

void BoilerplatesPaletteController::begin() {
  if (isCopying()) {
    isAwaited_ = true;
    return model_.showProgress(describe(*progress_));
  }
  model_.askForBoilerplate(services_.store.value().templates);
  findPlaces();
}

void BoilerplatesPaletteController::findPlaces() {
  finding_ = Job::start();
  const QString last = services_.store.value().lastPlace;
  const auto work = [scanner = services_.scanner, history = services_.history.value(),
                     last](const std::stop_token& stop) {
    return places(last,
                  ProjectFolders(scanner).recent(history.includeClaude, history.includeCodex, kProjectScanLimit, stop));
  };
  runInBackground(finding_, work, [this](const QStringList& found) { model_.setPlaces(places_ = found); });
}

void BoilerplatesPaletteController::chooseSelected(const KeyPress&) { choose(); }

void BoilerplatesPaletteController::choose() {
  using Action = BoilerplatesPaletteModel::Action;
  const auto action = model_.selectedAction();
  if (action == Action::useBoilerplate) {
    model_.askForName(Boilerplate(model_.selectedBoilerplate()));
  } else if (action == Action::openSettings) {
    hide();
    services_.settings.openToolSettings(kBoilerplatesID);
  } else if (action == Action::useName) {
    model_.askForPlace(QString(model_.query()));
  } else if (action == Action::usePlace) {
    create(model_.selectedPlace());
  } else if (action == Action::chooseFolder) {
    askForFolder();
  }
}

void BoilerplatesPaletteController::escape() {
  switch (model_.step()) {
    case BoilerplateStep::boilerplate:
      return PaletteController::escape();
    case BoilerplateStep::name:
      return model_.askForBoilerplate(services_.store.value().templates);
    case BoilerplateStep::place:
      return model_.askForName(Boilerplate(model_.boilerplate()), QString(model_.name()));
    case BoilerplateStep::copying:
      copying_ = Job();
      return model_.askForPlace(QString(model_.name()));
  }
}

void BoilerplatesPaletteController::askForFolder() {
  hide();
  services_.chooseFolder(places_.value(0, QDir::homePath()), [this](const QString& place) {
    // Another project may have been begun while the dialog was open.
    if (isCopying() || model_.name().isEmpty()) return;
    create(place);
    services_.clock.after(kPatience, copying_, [this] { show(); });
  });
}

void BoilerplatesPaletteController::create(const QString& place) {
  isAwaited_ = true;
  progress_ = std::make_shared<CopyProgress>();
  copying_ = Job::start();
  const TemplateCopy copy(model_.boilerplate().path, place, model_.name());
  runInBackground(
      copying_, [copy, progress = progress_](const std::stop_token& stop) { return copy.run(*progress, stop); },
      [this, place](const std::expected<MadeProject, CopyError>& made) { finish(place, made); });
  followProgress();
}

void BoilerplatesPaletteController::followProgress() {
  model_.showProgress(describe(*progress_));
  services_.clock.after(kTick, copying_, [this] { followProgress(); });
}

void BoilerplatesPaletteController::finish(const QString& place, const std::expected<MadeProject, CopyError>& made) {
  copying_ = Job();
  const QString name = visibleLine(model_.name(), kShown);
  if (!made) {
    services_.toasts.show({.icon = u"exclamationmark.triangle.fill"_s,
                           .title = u"Couldn’t create “%1”"_s.arg(name),
                           .detail = visibleLine(made.error().description(), kShown)},
                          kFailedToast);
    return model_.askForName(Boilerplate(model_.boilerplate()), QString(model_.name()));
  }
  services_.store.update([&](BoilerplateSettings& settings) { settings.lastPlace = place; });
  const bool isWaiting = isAwaited_;
  hide();
  services_.toasts.show({.icon = u"shippingbox.fill"_s,
                         .title = u"Created “%1”"_s.arg(name),
                         .detail = describe(*made),
                         .completes = true},
                        kCreatedToast);
  Q_EMIT created(made->path, isWaiting);
}
