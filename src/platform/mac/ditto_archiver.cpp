#include "platform/mac/ditto_archiver.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>

#include "base/folder.h"

using namespace Qt::StringLiterals;

namespace {

/// How soon a wish to stop is heard, in milliseconds.
constexpr int kAttention = 50;

}  // namespace

std::expected<void, ArchiveError> DittoArchiver::pack(const std::vector<ArchiveItem>& items, const QString& target,
                                                      ArchiveProgress&, const std::stop_token& stop) {
  const QString folder = QFileInfo(target).path() + u"/bulk-upload"_s;
  auto result = stage(items, folder, stop);
  if (result) result = run({u"-c"_s, u"-k"_s, u"--sequesterRsrc"_s, folder, target}, stop);
  QDir(folder).removeRecursively();
  if (!result) QFile::remove(target);
  return result;
}

std::expected<void, ArchiveError> DittoArchiver::stage(const std::vector<ArchiveItem>& items, const QString& folder,
                                                       const std::stop_token& stop) const {
  if (!makePrivateFolder(folder)) return std::unexpected(ArchiveError{.message = folder + u": cannot be made"_s});
  for (const ArchiveItem& item : items)
    if (const auto copied = run({item.path, folder + u'/' + item.name}, stop); !copied) return copied;
  return {};
}

std::expected<void, ArchiveError> DittoArchiver::run(const QStringList& arguments, const std::stop_token& stop) const {
  QProcess process;
  process.setStandardInputFile(QProcess::nullDevice());
  process.setStandardOutputFile(QProcess::nullDevice());
  process.start(program_, arguments);
  // A thread of the background, which has nothing else to do.
  while (process.state() != QProcess::NotRunning && !stop.stop_requested()) process.waitForFinished(kAttention);
  if (stop.stop_requested()) {
    process.kill();
    process.waitForFinished();
    return std::unexpected(ArchiveError{.wasCancelled = true});
  }
  if (process.error() == QProcess::FailedToStart)
    return std::unexpected(ArchiveError{.message = process.errorString()});
  if (process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0) return {};
  return std::unexpected(ArchiveError{.message = QString::fromLocal8Bit(process.readAllStandardError()).trimmed()});
}

#ifdef __APPLE__
std::unique_ptr<Archiver> makeArchiver() { return std::make_unique<DittoArchiver>(); }
#endif
