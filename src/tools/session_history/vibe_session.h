#pragma once

#include <QDateTime>
#include <QString>

#include <optional>
#include <span>

#include "platform/folder_listing.h"

/// The terminal agents whose transcripts are read.
enum class SessionAgent { claude, codex };

struct SessionAgentText {
  SessionAgent agent;
  QLatin1StringView rawValue;
  QLatin1StringView displayName;
};

std::span<const SessionAgentText> sessionAgents();
const SessionAgentText& text(SessionAgent agent);

/// One conversation with an agent.
struct VibeSession {
  /// The agent's own id.
  QString id;
  SessionAgent agent = SessionAgent::claude;
  /// One line.
  QString title;
  /// The folder it ran in.
  QString cwd;
  std::optional<QString> gitBranch;
  /// When its transcript was last written.
  FileTime lastActivity;
  /// Where the transcript lies, in bytes of the file system.
  std::string transcript;

  bool operator==(const VibeSession&) const = default;

  /// The shell command that takes the conversation up again, in its own folder.
  QString resumeCommand() const;
  /// The last component of the folder's path, "unknown project" without one.
  QString projectName() const;
};

/// A file's time on the user's own calendar.
QDateTime localTime(FileTime time);
