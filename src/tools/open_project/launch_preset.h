#pragma once

#include <QString>

#include <span>
#include <vector>

class SystemInfo;

/// One program that opens folders. `%path`, `%script` and `%arg` in the templates are filled in at each opening.
struct LaunchPreset {
  QString name;
  QString command;
  /// Runs the agent script in a new window; empty for what is no terminal.
  QString scriptedCommand;
  /// A shell line that succeeds where the program is installed; empty for what every system has.
  QString probe;
  /// Symbol name.
  QString icon;

  bool isTerminal() const { return !scriptedCommand.isEmpty(); }
};

/// The presets of a system, the one that is used without a choice first.
std::vector<LaunchPreset> launchPresets(const SystemInfo& system);
/// By its template; null for one that the user wrote.
const LaunchPreset* presetOf(std::span<const LaunchPreset> presets, const QString& command);
/// By its name, in upper or lower case; null when there is none.
const LaunchPreset* presetNamed(std::span<const LaunchPreset> presets, const QString& name);
/// The terminals' names as a sentence lists them, with "or" before the last.
QString terminalNames(std::span<const LaunchPreset> presets);

/// What takes the places of the placeholders, not yet quoted.
struct LaunchPlaces {
  QString path;
  QString script;
};

/// The template with its placeholders filled in, in one pass, so that a folder called "%script" stays what it is. Each
/// is quoted for the shell. `%arg` is the folder's name.
QString expandTemplate(const QString& command, const LaunchPlaces& places);
