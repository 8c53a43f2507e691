#include "tools/open_project/project_launcher.h"

#include <QDir>
#include <QProcess>

#include <unistd.h>
#include <memory>

#include "base/login_shell.h"
#include "platform/system_info.h"
#include "tools/open_project/agent_script.h"

using namespace Qt::StringLiterals;

namespace {

/// Without a parent, and in a session of its own: neither our end nor a Ctrl+C in our terminal reaches what it opens,
/// and an interactive shell finds no terminal to take from us.
QProcess* makeProcess(const ShellCall& call) {
  auto* process = new QProcess;
  process->setProgram(call.program);
  process->setArguments(call.arguments);
  process->setWorkingDirectory(QDir::homePath());
  process->setStandardInputFile(QProcess::nullDevice());
  process->setStandardOutputFile(QProcess::nullDevice());
  process->setStandardErrorFile(QProcess::nullDevice());
  process->setChildProcessModifier([] { ::setsid(); });
  return process;
}

/// A program that a signal ended counts as shells count it.
std::expected<void, LaunchError> outcome(int exitCode, QProcess::ExitStatus status) {
  constexpr int kSignalled = 128;
  const int code = status == QProcess::CrashExit ? kSignalled + exitCode : exitCode;
  if (code == 0) return {};
  return std::unexpected(LaunchError{u"Command exited with code %1"_s.arg(code)});
}

}  // namespace

ProjectLauncher::Settings ProjectLauncher::Settings::standard(const SystemInfo& system) {
  const QString shell = qEnvironmentVariable("SHELL");
  const bool isMac = system.systemName() == "macOS"_L1;
  return {launchPresets(system), shell, QDir::tempPath(), isMac ? u"/bin/zsh"_s : loginShellCall({}, shell).program};
}

void ProjectLauncher::open(const LaunchRequest& request, Done done) {
  QString script;
  const auto line = commandLine(request, script);
  if (line)
    run(*line, script, std::move(done));
  else
    JobRef(job_).later([done = std::move(done), error = line.error()] { done(std::unexpected(error)); });
}

void ProjectLauncher::removeOldScripts() const { removeOldAgentScripts(settings_.temporaryFolder); }

std::expected<QString, LaunchError> ProjectLauncher::commandLine(const LaunchRequest& request, QString& script) const {
  const QString command = commandOr(request.command);
  const LaunchPreset* preset = presetOf(settings_.presets, command);
  if (request.agentCommand.isEmpty() || !preset || !preset->isTerminal())
    return expandTemplate(command, {request.folder, {}});
  removeOldScripts();
  const auto written =
      writeAgentScript({request.folder, request.agentCommand, settings_.scriptShell}, settings_.temporaryFolder);
  if (!written) return std::unexpected(LaunchError{written.error().description()});
  script = *written;
  return expandTemplate(preset->scriptedCommand, {request.folder, script});
}

/// One command on its way. What becomes of it is told until `isFollowed` ends.
struct ProjectLauncher::Launch {
  Done done;
  QString script;
  bool hasOpened = false;
  bool isFollowed = true;

  void settle() {
    if (!isFollowed) return;
    hasOpened = true;
    done({});
  }
  void end(const std::expected<void, LaunchError>& result) {
    // A terminal that never came reads no script.
    if (!result && !script.isEmpty()) removeAgentScript(script);
    if (std::exchange(isFollowed, false) && !(result && hasOpened)) done(result);
  }
};

void ProjectLauncher::run(const QString& line, const QString& script, Done done) {
  QProcess* process = makeProcess(loginShellCall(line, settings_.shell));
  const auto launch = std::make_shared<Launch>(Launch{job_.bind(std::move(done)), script});
  QObject::connect(process, &QProcess::finished, process, [process, launch](int code, QProcess::ExitStatus status) {
    launch->end(outcome(code, status));
    process->deleteLater();
  });
  QObject::connect(process, &QProcess::errorOccurred, process, [process, launch](QProcess::ProcessError error) {
    if (error != QProcess::FailedToStart) return;
    launch->end(std::unexpected(LaunchError{process->errorString()}));
    process->deleteLater();
  });
  clock_.after(kSettled, job_, [launch] { launch->settle(); });
  clock_.after(kFollowed, job_, [launch] { launch->isFollowed = false; });
  if (!script.isEmpty()) clock_.after(kAgentScriptLife, job_, [script] { removeAgentScript(script); });
  process->start();
}
