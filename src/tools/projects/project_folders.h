#pragma once

#include <set>
#include <stop_token>
#include <vector>

#include "tools/projects/project_kind.h"
#include "tools/session_history/session_scanner.h"

/// How many sessions are looked through for the folders they ran in.
inline constexpr std::size_t kProjectScanLimit = 400;

/// A folder in which the user has lately worked with an agent; identified by its path.
struct ProjectFolder {
  QString path;
  FileTime lastActivity;
  /// How many of the scanned sessions ran here.
  int sessionCount = 0;
  std::set<SessionAgent> agents;
  ProjectKind kind = ProjectKind::folder;
  /// Takes up the newest session here.
  QString resumeCommand;

  bool operator==(const ProjectFolder&) const = default;
  /// The last component of the path.
  QString name() const;
};

/// The folders that the agents' transcripts name and that still exist, newest first. Stateless and blocking: for a
/// background thread.
class ProjectFolders {
 public:
  explicit ProjectFolders(const SessionTraceScanner& scanner) : scanner_(scanner) {}

  std::vector<ProjectFolder> recent(bool includeClaude, bool includeCodex, std::size_t scanLimit = kProjectScanLimit,
                                    const std::stop_token& stop = {}) const;

 private:
  const SessionTraceScanner& scanner_;
};
