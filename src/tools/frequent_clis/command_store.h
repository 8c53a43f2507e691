#pragma once

#include <QObject>
#include <QUuid>

#include <vector>

#include "base/clock.h"
#include "base/json_file.h"
#include "core/settings/folders.h"
#include "tools/frequent_clis/cli_command.h"

/// The user's ordered list of commands and its file. Edits within half a second make one write. Main thread only.
class CommandStore : public QObject {
  Q_OBJECT

 public:
  /// Moves the file of an earlier place if needed, loads, and schedules the first save.
  CommandStore(const Folders& folders, Clock& clock);

  const std::vector<CLICommand>& commands() const { return commands_; }
  /// Replaces the list and schedules a save.
  void setCommands(std::vector<CLICommand> commands);
  /// Appends a new empty command and returns its id.
  QUuid add();
  /// Writes now; termination calls it, so that the last half second is not lost.
  void save();

 Q_SIGNALS:
  void changed();

 private:
  void migrateLegacyFileIfNeeded(const Folders& folders);
  void load();
  void scheduleSave();

  JsonFile file_;
  Clock& clock_;
  std::vector<CLICommand> commands_;
  Job saveTask_;
};
