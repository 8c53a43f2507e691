#include "tools/file_drop/archive_folder.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QRegularExpression>
#include <QSet>
#include <QUuid>

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr auto kPrefix = "VibeBulk-"_L1;
constexpr auto kLock = "lock"_L1;
constexpr mode_t kOnlyUser = 0700;

bool isOurs(const QString& path) {
  static const QRegularExpression uuid(u"^[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}$"_s);
  struct stat info{};
  const QString name = QFileInfo(path).fileName();
  return uuid.match(name.mid(kPrefix.size())).hasMatch() && ::lstat(QFile::encodeName(path).constData(), &info) == 0 &&
         S_ISDIR(info.st_mode) && info.st_uid == ::getuid() && (info.st_mode & 07777) == kOnlyUser &&
         QFileInfo::exists(path + u'/' + kLock);
}

/// `name` with "-counter" before its extension; what begins with its only dot has none.
QString numbered(const QString& name, int counter) {
  const qsizetype dot = name.lastIndexOf(u'.');
  const qsizetype end = dot > 0 && dot + 1 < name.size() ? dot : name.size();
  return name.first(end) + u'-' + QString::number(counter) + name.sliced(end);
}

}  // namespace

std::expected<std::unique_ptr<ArchiveFolder>, FileError> ArchiveFolder::make(const QString& temporaryFolder) {
  const QString path = temporaryFolder + u'/' + kPrefix + QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
  if (::mkdir(QFile::encodeName(path).constData(), kOnlyUser) != 0)
    return std::unexpected(FileError{path, QString::fromLocal8Bit(std::strerror(errno))});
  std::unique_ptr<ArchiveFolder> folder(new ArchiveFolder(path));
  if (!folder->lock_.tryLock(0)) return std::unexpected(FileError{path, u"it cannot be written to"_s});
  return folder;
}

ArchiveFolder::ArchiveFolder(const QString& path) : path_(path), lock_(file(kLock)) { lock_.setStaleLockTime(0); }

void ArchiveFolder::remove() {
  // An empty path would be the current folder.
  const QString path = std::exchange(path_, {});
  if (path.isEmpty()) return;
  lock_.unlock();
  QDir(path).removeRecursively();
}

void ArchiveFolder::removeLeftovers(const QString& temporaryFolder) {
  const QDir folder(temporaryFolder);
  for (const QString& name : folder.entryList({kPrefix + u'*'}, QDir::Dirs | QDir::NoSymLinks)) {
    const QString path = folder.filePath(name);
    if (!isOurs(path)) continue;
    QLockFile lock(path + u'/' + kLock);
    lock.setStaleLockTime(0);
    // Whoever has it locked still needs it.
    if (!lock.tryLock(0)) continue;
    lock.unlock();
    QDir(path).removeRecursively();
  }
}

std::vector<ArchiveItem> archiveItems(const QStringList& paths) {
  std::vector<ArchiveItem> items;
  QSet<QString> taken;
  QHash<QString, int> counters;
  for (const QString& path : paths) {
    const QFileInfo info(path);
    const QString name = info.fileName().isEmpty() ? u"root"_s : info.fileName();
    QString free = name;
    int& counter = counters[name.toCaseFolded()];
    for (counter = std::max(counter, 1); taken.contains(free.toCaseFolded());) free = numbered(name, ++counter);
    taken.insert(free.toCaseFolded());
    // What was given may be a link to it.
    const QString target = info.canonicalFilePath();
    items.push_back({target.isEmpty() ? path : target, free});
  }
  return items;
}
