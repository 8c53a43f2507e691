#include "tools/projects/project_folders.h"

#include <QFileInfo>
#include <QHash>

#include <algorithm>

namespace {

/// The folders in the order of their newest sessions. `sessions` are newest first.
std::vector<ProjectFolder> byFolder(const std::vector<VibeSession>& sessions) {
  std::vector<ProjectFolder> folders;
  QHash<QString, std::size_t> places;
  for (const VibeSession& session : sessions) {
    if (session.cwd.isEmpty()) continue;
    const auto known = places.constFind(session.cwd);
    if (known == places.constEnd()) {
      places.insert(session.cwd, folders.size());
      folders.push_back(
          {session.cwd, session.lastActivity, 1, {session.agent}, ProjectKind::folder, session.resumeCommand()});
      continue;
    }
    ProjectFolder& folder = folders[*known];
    ++folder.sessionCount;
    folder.agents.insert(session.agent);
  }
  return folders;
}

/// A relative path would be looked for below wherever this program runs.
bool isFolder(const QString& path) { return path.startsWith(u'/') && QFileInfo(path).isDir(); }

}  // namespace

QString ProjectFolder::name() const { return path.section(QLatin1Char('/'), -1, -1, QString::SectionSkipEmpty); }

std::vector<ProjectFolder> ProjectFolders::recent(bool includeClaude, bool includeCodex, std::size_t scanLimit,
                                                  const std::stop_token& stop) const {
  std::vector<ProjectFolder> folders = byFolder(scanner_.recentSessions(scanLimit, includeClaude, includeCodex, stop));
  std::erase_if(folders, [](const ProjectFolder& folder) { return !isFolder(folder.path); });
  for (ProjectFolder& folder : folders) {
    if (stop.stop_requested()) break;
    folder.kind = detectProjectKind(folder.path);
  }
  return folders;
}
