#pragma once

#include <QString>

#include <expected>

#include "base/file_error.h"

/// What the script of a new terminal does.
struct AgentScript {
  QString folder;
  QString agentCommand;
  /// The user's login shell, which runs it.
  QString shell;

  /// Goes to the folder, runs the agent, and stays in an interactive shell when it ends.
  QByteArray contents() const;
};

/// Writes the script, executable and with a fresh name, into a folder of the user's own below `temporaryFolder`, and
/// answers its path. Scripts of earlier days are removed there: a terminal may still read a young one. Blocking.
std::expected<QString, FileError> writeAgentScript(const AgentScript& script, const QString& temporaryFolder);
