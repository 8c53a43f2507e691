#include "base/atomic_file.h"

#include <QFileInfo>
#include <QSaveFile>

#include <optional>

#include "base/folder.h"

namespace {

/// A link stays a link and its target is replaced; but a device or a pipe behind it must stay what it is.
bool leadsToNoFile(const QString& path) {
  const QFileInfo info(path);
  return info.isSymLink() && info.exists() && !info.isFile();
}

std::expected<void, FileError> writeWhole(const QString& path, const QByteArray& bytes,
                                          std::optional<QFile::Permissions> permissions) {
  if (leadsToNoFile(path)) return std::unexpected(FileError{path, QStringLiteral("not a regular file")});
  QSaveFile file(path);
  if (!file.open(QIODevice::WriteOnly)) return std::unexpected(FileError{path, file.errorString()});
  if (permissions) file.setPermissions(*permissions);
  // commit() does not notice that a buffered write failed when it flushes, and would put an empty file in place.
  const bool written = file.write(bytes) == bytes.size() && file.flush();
  if (!written) file.cancelWriting();
  if (!file.commit()) return std::unexpected(FileError{path, file.errorString()});
  return {};
}

}  // namespace

std::expected<void, FileError> writeFileAtomically(const QString& path, const QByteArray& bytes) {
  if (!makePrivateFolder(QFileInfo(path).path()))
    return std::unexpected(FileError{path, QStringLiteral("the folder cannot be created")});
  return writeWhole(path, bytes, QFile::ReadOwner | QFile::WriteOwner);
}

std::expected<void, FileError> replaceFileAtomically(const QString& path, const QByteArray& bytes) {
  return writeWhole(path, bytes, std::nullopt);
}
