#include "platform/mac/mac_updater.h"

#include <QDesktopServices>
#include <QProcess>
#include <QSysInfo>
#include <QUrl>

#include <algorithm>

#include "platform/mac/mac_backends.h"

using namespace Qt::StringLiterals;

namespace {

bool isTeam(const QString& name) {
  const auto isPlain = [](QChar c) { return (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9'); };
  return !name.isEmpty() && std::ranges::all_of(name, isPlain);
}

/// A Developer ID of that team, issued by Apple: the two fields mark its issuer and the certificate itself as such.
QString requirement(const QString& team) {
  return u"=anchor apple generic and certificate 1[field.1.2.840.113635.100.6.2.6] exists and certificate "
         u"leaf[field.1.2.840.113635.100.6.1.13] exists and certificate leaf[subject.OU] = \"%1\""_s.arg(team);
}

std::expected<void, QString> outcome(QProcess& process) {
  if (process.error() == QProcess::FailedToStart) return std::unexpected(process.errorString());
  if (process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0) return {};
  return std::unexpected(QString::fromLocal8Bit(process.readAllStandardError()).trimmed());
}

}  // namespace

QString MacUpdater::description() const {
  return u"A new version comes as a disk image: drag it over this one, and the permissions stay."_s;
}

QString MacUpdater::downloadName() const { return u"macos-"_s + QSysInfo::buildCpuArchitecture(); }

void MacUpdater::verify(const QString& path, const QString& publisher, const JobRef& job, Verified answer) {
  // It becomes part of what the signature is measured by.
  if (!isTeam(publisher)) return job.later([answer] { answer(std::unexpected(u"there is no such publisher"_s)); });
  auto* process = new QProcess(job.scope());
  process->setStandardInputFile(QProcess::nullDevice());
  process->setStandardOutputFile(QProcess::nullDevice());
  const std::function<void()> ended = job.bind([process, answer] { answer(outcome(*process)); });
  QObject::connect(process, &QProcess::finished, process, [ended] { ended(); });
  QObject::connect(process, &QProcess::errorOccurred, process, [ended](QProcess::ProcessError error) {
    if (error == QProcess::FailedToStart) ended();
  });
  process->start(codesign_, {u"--verify"_s, u"--strict"_s, u"-R"_s, requirement(publisher), path});
}

void MacUpdater::open(const QString& path) { QDesktopServices::openUrl(QUrl::fromLocalFile(path)); }

std::unique_ptr<Updater> mac::makeUpdater() { return std::make_unique<MacUpdater>(); }
