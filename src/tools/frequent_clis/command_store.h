#pragma once

#include <QHash>
#include <QJsonObject>
#include <QObject>
#include <QUuid>

#include <chrono>
#include <optional>
#include <vector>

#include "base/clock.h"
#include "base/json_file.h"
#include "core/settings/folders.h"
#include "tools/frequent_clis/cli_command.h"

/// The user's ordered list of commands and its file. Edits within half a second make one write. Main thread only.
///
/// A file that is not understood whole gives the default list and is set aside before the first write, never lost.
class CommandStore : public QObject {
  Q_OBJECT

 public:
  static constexpr std::chrono::milliseconds kSaveDelay{500};

  /// Moves the file of an earlier place if needed, loads, and schedules the first save.
  CommandStore(const Folders& folders, Clock& clock);

  const std::vector<CLICommand>& commands() const { return commands_; }
  /// Null when no command has that id.
  const CLICommand* find(const QUuid& id) const;

  /// Replaces the list and schedules a save.
  void setCommands(std::vector<CLICommand> commands);
  /// Appends a new command titled "New Command" and returns its id.
  QUuid add();
  /// Puts `command` in the place of the one with its id; an unknown id changes nothing.
  void replace(const CLICommand& command);
  void remove(const QUuid& id);
  /// Carries a command to the place `index` of the list, counted without it; clamped to the list.
  void move(const QUuid& id, int index);

  /// Writes now; termination calls it, so that the last half second is not lost.
  void save();

 Q_SIGNALS:
  void changed();

 private:
  void migrateLegacyFileIfNeeded(const Folders& folders);
  void load();
  std::optional<std::vector<CLICommand>> readCommands();
  std::optional<std::vector<CLICommand>> decodeCommands(const QJsonArray& array);
  QJsonObject encodeWhole(const CLICommand& command) const;
  void scheduleSave();

  JsonFile file_;
  Clock& clock_;
  std::vector<CLICommand> commands_;
  /// Keys of the stored commands that this version does not know; written back untouched.
  QHash<QUuid, QJsonObject> foreign_;
  Job saveTask_;
};
