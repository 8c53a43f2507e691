#include "base/regular_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

std::expected<std::unique_ptr<QFile>, FileError> openRegularFile(const QString& path) {
  const int descriptor = open(QFile::encodeName(path).constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
  if (descriptor < 0) return std::unexpected(FileError{path, qt_error_string(errno)});
  struct stat status{};
  auto file = std::make_unique<QFile>(path);
  const bool isRegular = fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
  if (!isRegular || !file->open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
    close(descriptor);
    return std::unexpected(FileError{path, QStringLiteral("not a regular file")});
  }
  return file;
}
