#pragma once

#include <QStringList>

#include "core/settings/store.h"
#include "tools/projects/project_folders.h"

/// The project folders that were made here, "new-projects.json": no agent has worked in them yet, so that no session
/// names them.
struct NewProjects {
  static constexpr const char* kStoreName = "NewProjectStore";
  /// By then agents have worked in the oldest, or nobody will.
  static constexpr qsizetype kKept = 50;

  /// The newest first.
  QStringList paths;

  bool operator==(const NewProjects&) const = default;
  void read(JsonReader& reader);
  void write(QJsonObject& object) const;

  void add(const QString& path);
};

using NewProjectStore = Store<NewProjects>;

/// `folders` and those of the new projects that still exist and are not among them, newest first. Blocking.
std::vector<ProjectFolder> withNewProjects(std::vector<ProjectFolder> folders, const NewProjects& made);
