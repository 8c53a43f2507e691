#include "service/storage/folder_blob_store.h"

#include <QDir>
#include <QFile>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/statvfs.h>

#include <cerrno>

#include "base/folder.h"
#include "service/storage/incoming_file.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kFolders = 256;

QString prefixOf(int folder) { return u"%1"_s.arg(folder, 2, 16, QChar(u'0')); }

bool syncFolder(const QString& path) {
  const Descriptor folder(open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  return folder && fsync(folder.number()) == 0;
}

bool isHash(const QString& name) {
  constexpr qsizetype kDigits = 64;
  return name.size() == kDigits &&
         std::ranges::all_of(name, [](QChar c) { return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f'); });
}

}  // namespace

std::expected<void, QString> FolderBlobStore::prepare() {
  const auto refused = [this] { return std::unexpected(u"the folder '%1' cannot be made"_s.arg(folder_)); };
  if (!makePrivateFolder(folder_ + u"/incoming"_s)) return refused();
  for (int i = 0; i < kFolders; ++i)
    if (!makePrivateFolder(folder_ + u"/blobs/"_s + prefixOf(i))) return refused();
  if (!syncFolder(folder_ + u"/blobs"_s) || !syncFolder(folder_)) return refused();
  return {};
}

void FolderBlobStore::removeLeftovers() {
  QDir incoming(folder_ + u"/incoming"_s);
  const QStringList left = incoming.entryList(QDir::Files | QDir::Hidden);
  for (const QString& name : left) incoming.remove(name);
}

Stored<std::unique_ptr<IncomingBlob>> FolderBlobStore::receive() {
  auto made = IncomingFile::make(folder_);
  if (!made) return std::unexpected(made.error());
  return std::unique_ptr<IncomingBlob>(std::move(*made));
}

Stored<BlobStore::Reading> FolderBlobStore::open(const QString& hash) const {
  const QString path = folder_ + u"/blobs/"_s + hash.left(2) + u'/' + hash;
  struct stat status{};
  Descriptor file(isHash(hash) ? ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW) : -1);
  if (!file || fstat(file.number(), &status) != 0) return std::unexpected(StorageError::fromErrno(path, errno));
  return Reading{std::move(file), status.st_size};
}

Stored<int> FolderBlobStore::sweep(const References& references) {
  int removed = 0;
  for (int i = 0; i < kFolders; ++i) {
    const auto swept = sweepFolder(prefixOf(i), references);
    if (!swept) return swept;
    removed += *swept;
  }
  return removed;
}

Stored<int> FolderBlobStore::sweepFolder(const QString& prefix, const References& references) {
  const QString path = folder_ + u"/blobs/"_s + prefix;
  const Descriptor folder(::open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!folder) return std::unexpected(StorageError::fromErrno(path, errno));
  QDir blobs(path);
  if (blobs.isEmpty(QDir::Files)) return 0;
  if (flock(folder.number(), LOCK_EX | LOCK_NB) != 0) return 0;
  // Both are read under the lock: nothing comes in between.
  const QStringList names = blobs.entryList(QDir::Files | QDir::Hidden);
  const auto referenced = references(prefix);
  if (!referenced) return std::unexpected(referenced.error());
  int removed = 0;
  for (const QString& name : names)
    if (!referenced->contains(name) && blobs.remove(name)) ++removed;
  return removed;
}

qint64 FolderBlobStore::available() const {
  struct statvfs status{};
  if (statvfs(QFile::encodeName(folder_).constData(), &status) != 0) return 0;
  return static_cast<qint64>(status.f_bavail) * static_cast<qint64>(status.f_frsize);
}
