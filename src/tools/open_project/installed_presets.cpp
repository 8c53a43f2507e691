#include "tools/open_project/installed_presets.h"

#include <QProcess>
#include <QTimer>

#include <unistd.h>
#include <chrono>

#include "base/login_shell.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// A profile that asks the user something would hold the shell for ever.
constexpr auto kPatience = 10s;
/// Sets our lines off from what a profile prints.
constexpr auto kMark = "vantle-installed:"_L1;

QString probeLine(const std::vector<LaunchPreset>& presets) {
  QString line;
  for (std::size_t index = 0; index < presets.size(); ++index)
    if (!presets[index].probe.isEmpty())
      line += u"%1 >/dev/null 2>&1 && echo %2%3; "_s.arg(presets[index].probe, kMark).arg(index);
  return line + u"echo %1end"_s.arg(kMark);
}

}  // namespace

void InstalledPresets::look() {
  if (job_.isRunning()) return;
  job_ = Job::start();
  auto* process = new QProcess(job_.scope());
  const ShellCall call = loginShellCall(probeLine(presets_), shell_);
  process->setProgram(call.program);
  process->setArguments(call.arguments);
  process->setStandardInputFile(QProcess::nullDevice());
  process->setStandardErrorFile(QProcess::nullDevice());
  process->setChildProcessModifier([] { ::setsid(); });
  job_.on(process, &QProcess::finished, [this, process](int, QProcess::ExitStatus) {
    read(process->readAllStandardOutput());
    job_ = Job();
  });
  job_.on(process, &QProcess::errorOccurred, [this](QProcess::ProcessError error) {
    if (error == QProcess::FailedToStart) job_ = Job();
  });
  QTimer::singleShot(kPatience, process, &QProcess::kill);
  process->start();
}

void InstalledPresets::read(const QByteArray& output) {
  const QByteArrayList lines = output.split('\n');
  const auto says = [&lines](const QString& what) { return lines.contains((kMark + what).toLatin1()); };
  if (!says(u"end"_s)) return;
  isKnown_ = true;
  std::set<QString> missing;
  for (std::size_t index = 0; index < presets_.size(); ++index)
    if (!presets_[index].probe.isEmpty() && !says(QString::number(index))) missing.insert(presets_[index].name);
  if (missing == missing_) return;
  missing_ = std::move(missing);
  Q_EMIT changed();
}
