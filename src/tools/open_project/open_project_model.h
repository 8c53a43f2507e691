#pragma once

#include "tools/open_project/installed_presets.h"
#include "tools/projects/project_list_model.h"

/// The palette's rows: first the projects; then, where the user chooses each time, the commands that could open the
/// chosen one. Main thread only.
class OpenProjectModel final : public ProjectListModel {
  Q_OBJECT

 public:
  enum PresetRole {
    /// Whether the row is a command; its name and template stand in NameRole and PathRole.
    IsPresetRole = Qt::UserRole + 100,
    IconRole,
    IsMissingRole,
  };

  OpenProjectModel(const InstalledPresets& installed, QString home);

  void startOver(const QDateTime& now);
  /// What the scan found; the commands, where they are shown by now, stay as they are.
  void takeProjects(std::vector<ProjectFolder> folders);
  /// Goes on to the commands for `folder`; the one of the template `usual` is selected.
  void showCommands(const ProjectFolder& folder, const QString& usual);
  /// Goes back to the projects, as they were.
  void showProjects();

  bool isChoosingCommand() const { return chosen_.has_value(); }
  /// What the commands are for.
  const std::optional<ProjectFolder>& chosenFolder() const { return chosen_; }
  /// Null without one.
  const LaunchPreset* selectedPreset() const;

  QString emptyText() const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 protected:
  void collectRows() override;

 private:
  void followInstalled();

  const InstalledPresets& installed_;
  std::optional<ProjectFolder> chosen_;
  /// What is installed, as far as is known, before what is not.
  std::vector<LaunchPreset> commands_;
  /// Of the projects, while the commands are shown.
  QString projectQuery_;
  int projectIndex_ = 0;
};
