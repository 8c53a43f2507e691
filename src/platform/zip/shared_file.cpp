#include "platform/zip/shared_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

SharedFile::SharedFile(const std::string& path)
    : descriptor_(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)), error_(descriptor_ < 0 ? errno : 0) {}

SharedFile::~SharedFile() {
  if (descriptor_ >= 0) close(descriptor_);
}

std::expected<std::vector<unsigned char>, int> SharedFile::read(std::int64_t offset, std::int64_t length) const {
  if (descriptor_ < 0) return std::unexpected(error_);
  std::vector<unsigned char> bytes(static_cast<std::size_t>(length));
  std::size_t filled = 0;
  while (filled < bytes.size()) {
    const ssize_t count =
        pread(descriptor_, bytes.data() + filled, bytes.size() - filled, offset + static_cast<std::int64_t>(filled));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return std::unexpected(errno);
    if (count == 0) break;
    filled += static_cast<std::size_t>(count);
  }
  bytes.resize(filled);
  return bytes;
}
