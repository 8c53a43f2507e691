#pragma once

#include <QDateTime>

#include <vector>

#include "core/palette/palette_list_model.h"
#include "tools/projects/project_folders.h"

/// The recent project folders, newest first, filtered by name and path. Main thread only.
class ProjectListModel : public PaletteListModel {
  Q_OBJECT

 public:
  enum Role {
    NameRole = Qt::DisplayRole,
    /// With the home folder as "~".
    PathRole = Qt::UserRole,
    /// What the kind's badge says; empty for no badge.
    KindTagRole,
    KindColorRole,
    /// QStringList of raw values.
    AgentsRole,
    /// How long ago.
    TimeRole,
  };

  /// `home`: the folder that paths show as "~".
  explicit ProjectListModel(QString home, QObject* parent = nullptr)
      : PaletteListModel(parent), home_(std::move(home)) {}

  /// A scan begins: the rows of the last one stay away, the query is empty.
  void beginLoading(const QDateTime& now);
  /// Shows what the scan found, under the query typed meanwhile.
  void finishLoading(std::vector<ProjectFolder> folders);
  bool isLoading() const { return isLoading_; }
  /// The matching folders in the order of the rows.
  const std::vector<ProjectFolder>& filtered() const { return filtered_; }
  /// Null without one.
  const ProjectFolder* selectedFolder() const;

  /// As rows show a path.
  QString shownPath(const QString& path) const;

  QString emptyText() const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 protected:
  /// Takes over what the scan found, for the next `collectRows`.
  void keep(std::vector<ProjectFolder> folders);
  void collectRows() override;

 private:
  QString accessibleText(const ProjectFolder& folder) const;

  QString home_;
  QDateTime now_;
  std::vector<ProjectFolder> all_;
  std::vector<ProjectFolder> filtered_;
  bool isLoading_ = false;
};
