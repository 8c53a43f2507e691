#include "base/atomic_file.h"

#include <QFileInfo>
#include <QSaveFile>

#include "base/folder.h"

namespace {

std::expected<void, FileError> fillAndCommit(QSaveFile& file, const QByteArray& bytes) {
  // commit() does not notice that a buffered write failed when it flushes, and would put an empty file in place.
  const bool written = file.write(bytes) == bytes.size() && file.flush();
  if (!written) file.cancelWriting();
  if (!file.commit()) return std::unexpected(FileError{file.fileName(), file.errorString()});
  return {};
}

}  // namespace

std::expected<void, FileError> writeFileAtomically(const QString& path, const QByteArray& bytes) {
  if (!makePrivateFolder(QFileInfo(path).path()))
    return std::unexpected(FileError{path, QStringLiteral("the folder cannot be created")});
  QSaveFile file(path);
  if (!file.open(QIODevice::WriteOnly)) return std::unexpected(FileError{path, file.errorString()});
  file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
  return fillAndCommit(file, bytes);
}

std::expected<void, FileError> replaceFileAtomically(const QString& path, const QByteArray& bytes) {
  QSaveFile file(path);
  if (!file.open(QIODevice::WriteOnly)) return std::unexpected(FileError{path, file.errorString()});
  return fillAndCommit(file, bytes);
}
