#include "core/net/download_file.h"

#include <QFileInfo>

#include <cerrno>
#include <cstdio>

#include "base/folder.h"

std::expected<std::shared_ptr<DownloadFile>, FileError> DownloadFile::beside(const QString& path) {
  if (!makePrivateFolder(QFileInfo(path).path()))
    return std::unexpected(FileError{path, QStringLiteral("the folder cannot be created")});
  std::shared_ptr<DownloadFile> file(new DownloadFile(path));
  QFile& part = file->part_;
  part.remove();
  // Unbuffered, so that a full disk is noticed by the piece that does not fit.
  if (!part.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered,
                 QFile::ReadOwner | QFile::WriteOwner))
    return std::unexpected(FileError{part.fileName(), part.errorString()});
  file->open(QIODevice::WriteOnly | QIODevice::Unbuffered);
  return file;
}

qint64 DownloadFile::writeData(const char* data, qint64 length) {
  if (part_.write(data, length) != length) {
    setErrorString(FileError{part_.fileName(), part_.errorString()}.description());
    return -1;
  }
  hash_.addData(QByteArrayView(data, length));
  return length;
}

std::expected<void, FileError> DownloadFile::finish() {
  part_.close();
  close();
  if (std::rename(QFile::encodeName(part_.fileName()).constData(), QFile::encodeName(path_).constData()) == 0)
    return {};
  const FileError error{path_, qt_error_string(errno)};
  part_.remove();
  return std::unexpected(error);
}

void DownloadFile::discard() {
  if (!isOpen()) return;
  close();
  part_.close();
  part_.remove();
}
