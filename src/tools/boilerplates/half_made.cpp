#include "tools/boilerplates/half_made.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QUuid>

#include <algorithm>
#include <cerrno>
#include <string>
#include <string_view>
#include <system_error>

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kPrefix = ".vantle-new-";
/// Hexadecimal digits behind it.
constexpr std::size_t kDigits = 32;
/// Another process could take a folder for abandoned in the moment before it is locked.
constexpr int kAttempts = 4;

std::string temporaryName() { return std::string(kPrefix) + QUuid::createUuid().toString(QUuid::Id128).toStdString(); }

bool isTemporaryName(std::string_view name) {
  if (name.size() != kPrefix.size() + kDigits || !name.starts_with(kPrefix)) return false;
  return name.find_first_not_of("0123456789abcdef", kPrefix.size()) == std::string_view::npos;
}

/// Also what is in folders that nothing may be removed from.
void removeTree(const fs::path& folder) {
  std::error_code code;
  ::chmod(folder.c_str(), S_IRWXU);
  for (fs::recursive_directory_iterator it(folder, code), end; !code && it != end; it.increment(code))
    if (std::error_code ignored; fs::is_directory(it->symlink_status(ignored))) ::chmod(it->path().c_str(), S_IRWXU);
  fs::remove_all(folder, code);
}

}  // namespace

class FolderLock {
 public:
  explicit FolderLock(const fs::path& folder)
      : descriptor_(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC)) {
    error_ = ::flock(descriptor_, LOCK_EX | LOCK_NB) == 0 ? 0 : errno;
  }
  ~FolderLock() {
    if (descriptor_ >= 0) ::close(descriptor_);
  }
  FolderLock(const FolderLock&) = delete;
  FolderLock& operator=(const FolderLock&) = delete;

  bool isHeld() const { return error_ == 0; }
  /// Some file systems have no such locks.
  bool isPossible() const { return isHeld() || error_ == EWOULDBLOCK; }
  bool isOwn() const {
    struct stat status{};
    return ::fstat(descriptor_, &status) == 0 && status.st_uid == ::geteuid();
  }

 private:
  int descriptor_;
  int error_;
};

namespace {

void removeAbandoned(const fs::path& place) {
  std::error_code code;
  for (fs::directory_iterator it(place, code), end; !code && it != end; it.increment(code)) {
    if (!isTemporaryName(it->path().filename().native())) continue;
    if (const FolderLock lock(it->path()); lock.isHeld() && lock.isOwn()) removeTree(it->path());
  }
}

}  // namespace

HalfMade::HalfMade(const fs::path& target) : target_(target) {}

HalfMade::~HalfMade() {
  if (lock_) removeTree(path_);
}

bool HalfMade::make() {
  removeAbandoned(target_.parent_path());
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    path_ = target_.parent_path() / temporaryName();
    if (::mkdir(path_.c_str(), S_IRWXU) != 0) return false;
    auto lock = std::make_unique<FolderLock>(path_);
    // Locked too late when another process has begun to remove it.
    const bool isStillThere = ::access(path_.c_str(), F_OK) == 0;
    if (isStillThere && (lock->isHeld() || !lock->isPossible())) {
      lock_ = std::move(lock);
      return true;
    }
  }
  errno = EBUSY;
  return false;
}

bool HalfMade::putInPlace() {
  if (::rename(path_.c_str(), target_.c_str()) != 0) return false;
  lock_.reset();
  return true;
}
