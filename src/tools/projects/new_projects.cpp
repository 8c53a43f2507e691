#include "tools/projects/new_projects.h"

#include <QDateTime>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

FileTime changedAt(const QFileInfo& folder) {
  return FileTime(std::chrono::milliseconds(folder.lastModified().toMSecsSinceEpoch()));
}

}  // namespace

void NewProjects::read(JsonReader& reader) { reader.read("paths"_L1, paths); }

void NewProjects::write(QJsonObject& object) const { object.insert("paths"_L1, QJsonArray::fromStringList(paths)); }

void NewProjects::add(const QString& path) {
  paths.removeAll(path);
  paths.prepend(path);
  if (paths.size() > kKept) paths.resize(kKept);
}

std::vector<ProjectFolder> withNewProjects(std::vector<ProjectFolder> folders, const NewProjects& made) {
  for (const QString& path : made.paths) {
    const QFileInfo folder(path);
    if (!folder.isAbsolute() || !folder.isDir() || std::ranges::count(folders, path, &ProjectFolder::path) > 0)
      continue;
    folders.push_back({path, changedAt(folder), 0, {}, detectProjectKind(path), {}});
  }
  std::ranges::stable_sort(folders, std::ranges::greater(), &ProjectFolder::lastActivity);
  return folders;
}
