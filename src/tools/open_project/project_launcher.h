#pragma once

#include <chrono>
#include <expected>
#include <functional>

#include "base/clock.h"
#include "tools/open_project/launch_preset.h"

/// Why a project did not open.
struct LaunchError {
  QString text;

  QString description() const { return text; }
};

/// What is to be opened, and how.
struct LaunchRequest {
  QString folder;
  QString command;
  /// Empty for none; only terminals among the presets start it.
  QString agentCommand;
};

/// Runs the command that opens a project, by the user's login shell. The program lives on when the launcher, or the
/// application, ends; what it prints is nobody's. Main thread only.
class ProjectLauncher {
 public:
  /// On the main thread: how it ended; and once more, with an error, where a command that seemed to have opened its
  /// window fails a little later, as after a shell's slow profile.
  using Done = std::function<void(const std::expected<void, LaunchError>&)>;

  /// A command that still runs after this time has opened its window: many terminals stay until that is closed.
  static constexpr std::chrono::milliseconds kSettled{1500};
  /// A failure after this time is of the window that was open, and none of ours: many terminals end as their shell
  /// does.
  static constexpr std::chrono::seconds kFollowed{10};

  struct Settings {
    std::vector<LaunchPreset> presets;
    /// The value of SHELL; empty when it is unset.
    QString shell;
    QString temporaryFolder;
    /// Runs the agent scripts.
    QString scriptShell;

    /// Those of the user who runs the program.
    static Settings standard(const SystemInfo& system);
  };

  ProjectLauncher(Settings settings, Clock& clock) : settings_(std::move(settings)), clock_(clock) {}

  const std::vector<LaunchPreset>& presets() const { return settings_.presets; }
  /// The first preset's template for an empty one.
  QString commandOr(const QString& command) const { return command.isEmpty() ? presets().front().command : command; }

  void open(const LaunchRequest& request, Done done);
  /// Those that an earlier run has left. Blocking, shortly.
  void removeOldScripts() const;

 private:
  struct Launch;

  std::expected<QString, LaunchError> commandLine(const LaunchRequest& request, QString& script) const;
  void run(const QString& line, const QString& script, Done done);

  Settings settings_;
  Clock& clock_;
  /// Lives as long as the launcher: one project opened soon after another drops neither's outcome.
  Job job_ = Job::start();
};
