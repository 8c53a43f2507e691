#pragma once

#include "core/palette/palette_controller.h"
#include "tools/open_project/open_project_model.h"
#include "tools/open_project/open_project_settings.h"
#include "tools/open_project/project_launcher.h"
#include "tools/projects/new_projects.h"
#include "tools/session_history/vibe_history_settings.h"

class Pasteboard;
class ToastPresenter;

/// The palette's flow: each show looks for the projects anew in the background; Return opens the selected one, or goes
/// on to the commands first. Main thread only.
class OpenProjectController final : public QObject, public PaletteController {
  Q_OBJECT

 public:
  struct Services {
    const OpenProjectStore& settings;
    /// Says which agents' sessions count.
    const VibeHistoryStore& history;
    const SessionTraceScanner& scanner;
    ProjectLauncher& projects;
    InstalledPresets& installed;
    Pasteboard& pasteboard;
    /// May be written to by the command line at any time.
    NewProjectStore& newProjects;
    ToastPresenter& toasts;
    Clock& clock;
    LauncherOpener& launcher;
  };

  /// `home`: the folder that paths show as "~".
  OpenProjectController(Services services, QString home, PanelFactory makePanel);

  OpenProjectModel& model() { return model_; }
  /// Lists a project that was made just now among the recent ones, before any agent has worked there.
  void add(const QString& path);
  /// Shows the palette with the commands for one folder.
  void offer(const QString& path);
  /// A click on a row.
  void choose(int row);

 protected:
  PaletteListModel& list() override { return model_; }
  void begin() override;
  void chooseSelected(const KeyPress& key) override;
  void escape() override;
  void ended() override { scan_ = Job(); }

 private:
  void showCommands(const ProjectFolder& folder);
  void open(const ProjectFolder& folder, const QString& command);
  void opened(const ProjectFolder& folder);
  void failed(const LaunchError& error);

  Services services_;
  OpenProjectModel model_;
  Job scan_;
  /// Lives as long as the controller: the outcome comes when the palette is long gone.
  Job opening_ = Job::start();
};
