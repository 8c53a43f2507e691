#pragma once

#include <QString>

#include <chrono>
#include <expected>

#include "base/file_error.h"

/// What the script of a new terminal does.
struct AgentScript {
  QString folder;
  QString agentCommand;
  /// The program that runs it.
  QString shell;

  /// Goes to the folder, runs the agent, and stays in an interactive shell when it ends.
  QByteArray contents() const;
};

/// Writes the script, executable and with a fresh name, into a folder of the user's own below `temporaryFolder`, and
/// answers its path. Blocking.
std::expected<QString, FileError> writeAgentScript(const AgentScript& script, const QString& temporaryFolder);

/// Long after any terminal has opened its script; a shell keeps reading one that is removed.
inline constexpr std::chrono::minutes kAgentScriptLife{10};
void removeAgentScript(const QString& path);
/// Removes the scripts that are older than that: those of programs that have ended since. Blocking.
void removeOldAgentScripts(const QString& temporaryFolder);
