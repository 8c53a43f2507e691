#pragma once

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QByteArray>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <optional>
#include <utility>

/// An open file, closed when it goes. Unlike QFile it reaches names that are not Unicode. After a failure `errno` says
/// why.
class OpenFile {
 public:
  OpenFile(const std::filesystem::path& path, int flags, mode_t mode = 0)
      : descriptor_(::open(path.c_str(), flags | O_CLOEXEC, mode)) {}
  ~OpenFile() {
    if (descriptor_ >= 0) ::close(descriptor_);
  }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

  bool isOpen() const { return descriptor_ >= 0; }
  int descriptor() const { return descriptor_; }
  bool isRegular() const {
    struct stat status{};
    return ::fstat(descriptor_, &status) == 0 && S_ISREG(status.st_mode);
  }
  /// Up to `size` bytes, fewer only at the file's end; none on an error.
  std::optional<QByteArray> read(qsizetype size) const {
    QByteArray bytes(size, Qt::Uninitialized);
    qsizetype filled = 0;
    while (filled < size) {
      const ssize_t count = ::read(descriptor_, bytes.data() + filled, static_cast<std::size_t>(size - filled));
      if (count < 0 && errno == EINTR) continue;
      if (count < 0) return std::nullopt;
      if (count == 0) break;
      filled += count;
    }
    bytes.truncate(filled);
    return bytes;
  }
  bool write(const QByteArray& bytes) const {
    qsizetype written = 0;
    while (written < bytes.size()) {
      const ssize_t count =
          ::write(descriptor_, bytes.constData() + written, static_cast<std::size_t>(bytes.size() - written));
      if (count < 0 && errno != EINTR) return false;
      written += std::max<ssize_t>(count, 0);
    }
    return true;
  }
  bool setMode(mode_t mode) const { return ::fchmod(descriptor_, mode) == 0; }
  /// Some file systems tell of a failed write only now.
  bool close() { return ::close(std::exchange(descriptor_, -1)) == 0; }

 private:
  int descriptor_;
};
