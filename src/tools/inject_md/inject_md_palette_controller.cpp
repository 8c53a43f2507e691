#include "tools/inject_md/inject_md_palette_controller.h"

#include <utility>

#include "base/background.h"
#include "base/visible_text.h"
#include "core/presenters/toast_presenter.h"
#include "tools/inject_md/inject_md_tool.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kWrittenToast = 4s;
constexpr auto kFailedToast = 6s;
constexpr int kShown = 200;

}  // namespace

InjectMDPaletteController::InjectMDPaletteController(Services services, PanelFactory makePanel)
    : PaletteController(services.launcher, kInjectMDID, std::move(makePanel)),
      services_(std::move(services)),
      model_(services_.home) {}

void InjectMDPaletteController::begin() {
  if (question_)
    model_.askToOverwrite(document_, question_->folder, question_->existing);
  else if (const auto pause = std::exchange(pause_, std::nullopt))
    resume(*pause);
  else
    start();
}

void InjectMDPaletteController::start() {
  settings_ = services_.settings.value();
  document_ = settings_.defaultDocument();
  scan();
  if (asksForDocument())
    model_.askForDocument(settings_);
  else
    askForProject();
}

void InjectMDPaletteController::resume(const Pause& pause) {
  settings_ = pause.settings;
  document_ = pause.document;
  scan();
  askForProject();
  model_.setQuery(pause.query);
}

bool InjectMDPaletteController::asksForDocument() const { return settings_.documents.size() > 1; }

void InjectMDPaletteController::askForProject() { model_.askForProject(!asksForDocument()); }

void InjectMDPaletteController::scan() {
  using std::chrono::milliseconds;
  const auto now = std::chrono::duration_cast<milliseconds>(services_.clock.now());
  model_.projects().beginLoading(QDateTime::fromMSecsSinceEpoch(now.count()));
  scan_ = Job::start();
  const auto work = [scanner = services_.scanner, flags = services_.history.value()](const std::stop_token& stop) {
    return ProjectFolders(scanner).recent(flags.includeClaude, flags.includeCodex, kProjectScanLimit, stop);
  };
  runInBackground(scan_, work,
                  [this](std::vector<ProjectFolder> folders) { model_.projects().finishLoading(std::move(folders)); });
}

void InjectMDPaletteController::chooseSelected(const KeyPress&) { choose(model_.selectionIndex()); }

void InjectMDPaletteController::choose(int row) {
  if (looking_.isRunning()) return;
  if (const MDDocument* document = model_.document(row)) {
    document_ = *document;
    askForProject();
  } else if (const ProjectFolder* project = model_.project(row)) {
    inject(document_, project->path);
  } else if (model_.isFolderChooser(row)) {
    chooseFolder();
  } else if (model_.isConfirmation(row) && question_) {
    const QString folder = question_->folder;
    hide();
    write(document_, folder, MDInjector::Overwrite::yes);
  } else {
    hide();
  }
}

void InjectMDPaletteController::chooseFolder() {
  const Pause pause{settings_, document_, model_.query()};
  hide();
  services_.chooseFolder(u"Choose a folder to inject a Markdown file into"_s,
                         [this, pause](const std::optional<QString>& folder) { takeFolder(pause, folder); });
}

/// The palette may have been opened anew meanwhile.
void InjectMDPaletteController::takeFolder(const Pause& pause, const std::optional<QString>& folder) {
  if (folder) return inject(pause.document, *folder);
  if (isShown()) return;
  pause_ = pause;
  showAgain();
}

void InjectMDPaletteController::inject(const MDDocument& document, const QString& folder) {
  looking_ = Job::start();
  const auto look = [injector = MDInjector(document, folder)](const std::stop_token&) { return injector.inspect(); };
  runInBackground(looking_, look,
                  [this, document, folder](const std::expected<std::optional<ExistingFile>, InjectionError>& found) {
                    looking_.cancel();
                    if (found && *found) return ask(document, folder, **found);
                    hide();
                    if (found)
                      write(document, folder, MDInjector::Overwrite::no);
                    else
                      report(found.error());
                  });
}

/// In the palette, which a folder chooser has hidden meanwhile.
void InjectMDPaletteController::ask(const MDDocument& document, const QString& folder, const ExistingFile& existing) {
  document_ = document;
  question_ = Question{folder, existing};
  if (isShown())
    begin();
  else
    showAgain();
}

void InjectMDPaletteController::write(const MDDocument& document, const QString& folder,
                                      MDInjector::Overwrite overwrite) {
  const MDInjector injector(document, folder);
  runInBackground(
      writing_, [injector, overwrite](const std::stop_token&) { return injector.write(overwrite); },
      [this, injector, name = document.fileName](const std::expected<void, InjectionError>& written) {
        if (!written) return report(written.error());
        services_.toasts.show({.icon = u"checkmark.circle.fill"_s,
                               .title = u"%1 is in place"_s.arg(visibleLine(name, kShown)),
                               .detail = model_.projects().shownPath(injector.targetPath()),
                               .detailMonospaced = true},
                              kWrittenToast);
      });
}

void InjectMDPaletteController::report(const InjectionError& error) {
  services_.toasts.show({.icon = u"exclamationmark.triangle.fill"_s,
                         .title = u"Couldn’t write %1"_s.arg(visibleLine(error.fileName, kShown)),
                         .detail = error.reason},
                        kFailedToast);
}

bool InjectMDPaletteController::handleOwnKey(const KeyPress& key) {
  if (model_.step() != InjectMDPaletteModel::Step::overwrite) return false;
  if (key.keyCode == keycode::kPageUp || key.keyCode == keycode::kPageDown) {
    Q_EMIT turned(key.keyCode == keycode::kPageUp ? -1 : 1);
    return true;
  }
  // A question that is answered with one of two rows has nothing to filter.
  return !key.command && !key.control && key.isText();
}

void InjectMDPaletteController::escape() {
  looking_.cancel();
  if (model_.step() == InjectMDPaletteModel::Step::overwrite) {
    question_.reset();
    askForProject();
    // The folder chooser, where the question came from it, took the palette and its scan away.
    if (!scan_.isRunning()) scan();
  } else if (model_.step() == InjectMDPaletteModel::Step::project && asksForDocument()) {
    model_.askForDocument(settings_);
  } else {
    PaletteController::escape();
  }
}

void InjectMDPaletteController::ended() {
  scan_ = Job();
  looking_ = Job();
  question_.reset();
}
