#include "tools/open_project/open_project_controller.h"

#include "base/background.h"
#include "base/visible_text.h"
#include "core/presenters/toast_presenter.h"
#include "platform/pasteboard.h"
#include "tools/open_project/open_project_tool.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kOpenedToast = 4s;
/// There is something to read.
constexpr auto kFailureToast = 8s;
constexpr int kShownName = 80;

}  // namespace

OpenProjectController::OpenProjectController(Services services, QString home, PanelFactory makePanel)
    : PaletteController(services.launcher, kOpenProjectID, std::move(makePanel)),
      services_(services),
      model_(services.installed, std::move(home)) {}

void OpenProjectController::begin() {
  using std::chrono::milliseconds;
  const auto now = std::chrono::duration_cast<milliseconds>(services_.clock.now());
  model_.startOver(QDateTime::fromMSecsSinceEpoch(now.count()));
  if (!services_.installed.isKnown()) services_.installed.look();
  services_.newProjects.reload();
  scan_ = Job::start();
  const auto work = [&scanner = services_.scanner, history = services_.history.value(),
                     made = services_.newProjects.value()](const std::stop_token& stop) {
    return withNewProjects(
        ProjectFolders(scanner).recent(history.includeClaude, history.includeCodex, kProjectScanLimit, stop), made);
  };
  runInBackground(scan_, work, [this](std::vector<ProjectFolder> folders) { model_.takeProjects(std::move(folders)); });
}

void OpenProjectController::add(const QString& path) {
  services_.newProjects.reload();
  services_.newProjects.update([&path](NewProjects& made) { made.add(path); });
}

void OpenProjectController::offer(const QString& path) {
  show();
  ProjectFolder folder;
  folder.path = path;
  showCommands(folder);
}

void OpenProjectController::showCommands(const ProjectFolder& folder) {
  services_.installed.look();
  model_.showCommands(folder, services_.projects.commandOr(services_.settings.value().command));
}

void OpenProjectController::choose(int row) {
  model_.select(row);
  chooseSelected({});
}

void OpenProjectController::chooseSelected(const KeyPress& key) {
  if (const LaunchPreset* preset = model_.selectedPreset()) {
    open(*model_.chosenFolder(), preset->command);
    return;
  }
  const ProjectFolder* folder = model_.selectedFolder();
  if (!folder) return;
  if (services_.settings.value().askForCommand || key.command)
    showCommands(*folder);
  else
    open(*folder, services_.settings.value().command);
}

void OpenProjectController::escape() {
  if (model_.isChoosingCommand())
    model_.showProjects();
  else
    PaletteController::escape();
}

void OpenProjectController::open(const ProjectFolder& folder, const QString& command) {
  const LaunchRequest request{folder.path, command, services_.settings.value().effectiveAgentCommand()};
  const auto done = [this, folder](const std::expected<void, LaunchError>& result) {
    if (result)
      opened(folder);
    else
      failed(result.error());
  };
  hide();
  services_.projects.open(request, opening_.bind(done));
}

void OpenProjectController::opened(const ProjectFolder& folder) {
  QString title = u"Opened "_s + visibleLine(folder.name(), kShownName);
  const bool copies = services_.settings.value().copyResume && !folder.resumeCommand.isEmpty();
  if (copies) {
    services_.pasteboard.writeText(folder.resumeCommand);
    title += u" · resume command copied"_s;
  }
  services_.toasts.show({.icon = u"checkmark.circle.fill"_s, .title = title}, kOpenedToast);
}

void OpenProjectController::failed(const LaunchError& error) {
  services_.toasts.show(
      {.icon = u"exclamationmark.triangle.fill"_s, .title = u"Couldn’t open"_s, .detail = error.description()},
      kFailureToast);
}
