#include "tools/open_project/project_launcher.h"

#include <QDir>
#include <QProcess>

#include <unistd.h>
#include <memory>

#include "base/login_shell.h"
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

std::expected<void, LaunchError> outcome(int exitCode) {
  if (exitCode == 0) return {};
  return std::unexpected(LaunchError{u"Command exited with code %1"_s.arg(exitCode)});
}

}  // namespace

ProjectLauncher::Settings ProjectLauncher::Settings::standard(const SystemInfo& system) {
  return {launchPresets(system), qEnvironmentVariable("SHELL"), QDir::tempPath()};
}

void ProjectLauncher::open(const LaunchRequest& request, Done done) {
  QString script;
  const auto line = commandLine(request, script);
  if (line)
    run(*line, script, std::move(done));
  else
    JobRef(job_).later([done = std::move(done), error = line.error()] { done(std::unexpected(error)); });
}

std::expected<QString, LaunchError> ProjectLauncher::commandLine(const LaunchRequest& request, QString& script) const {
  const QString command = commandOr(request.command);
  const LaunchPreset* preset = presetOf(settings_.presets, command);
  if (request.agentCommand.isEmpty() || !preset || !preset->isTerminal())
    return expandTemplate(command, {request.folder, {}});
  const QString shell = loginShellCall({}, settings_.shell).program;
  const auto written = writeAgentScript({request.folder, request.agentCommand, shell}, settings_.temporaryFolder);
  if (!written) return std::unexpected(LaunchError{written.error().description()});
  script = *written;
  return expandTemplate(preset->scriptedCommand, {request.folder, script});
}

void ProjectLauncher::run(const QString& line, const QString& script, Done done) {
  QProcess* process = makeProcess(loginShellCall(line, settings_.shell));
  const auto once = std::make_shared<Done>(job_.bind(std::move(done)));
  const auto report = [once, script](const std::expected<void, LaunchError>& result) {
    // A terminal that never came reads no script.
    if (!result && !script.isEmpty()) QFile::remove(script);
    if (const Done pending = std::exchange(*once, {})) pending(result);
  };
  QObject::connect(process, &QProcess::finished, process, [process, report](int exitCode) {
    report(outcome(exitCode));
    process->deleteLater();
  });
  QObject::connect(process, &QProcess::errorOccurred, process, [process, report](QProcess::ProcessError error) {
    if (error != QProcess::FailedToStart) return;
    report(std::unexpected(LaunchError{process->errorString()}));
    process->deleteLater();
  });
  clock_.after(kSettled, job_, [report] { report({}); });
  process->start();
}
