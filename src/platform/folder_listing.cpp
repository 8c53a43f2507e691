#include "platform/folder_listing.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <memory>

namespace {

FileTime modificationTime(const struct stat& status) {
#ifdef __APPLE__
  const timespec& time = status.st_mtimespec;
#else
  const timespec& time = status.st_mtim;
#endif
  return FileTime(std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec));
}

bool isDots(const char* name) { return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0')); }

FolderEntry::Kind kindOf(mode_t mode) {
  if (S_ISREG(mode)) return FolderEntry::Kind::file;
  return S_ISDIR(mode) ? FolderEntry::Kind::folder : FolderEntry::Kind::other;
}

/// False when the entry is gone or leads nowhere.
bool examine(int folder, const dirent& raw, ListingDetail detail, FolderEntry& entry) {
  if (detail == ListingDetail::namesOnly) return true;
  if (raw.d_type == DT_DIR || (raw.d_type == DT_REG && detail == ListingDetail::kindOfAll)) {
    entry.kind = raw.d_type == DT_DIR ? FolderEntry::Kind::folder : FolderEntry::Kind::file;
    return true;
  }
  struct stat status{};
  if (fstatat(folder, raw.d_name, &status, 0) != 0) return false;
  entry.kind = kindOf(status.st_mode);
  if (entry.kind == FolderEntry::Kind::folder && raw.d_type == DT_LNK) entry.kind = FolderEntry::Kind::other;
  entry.size = status.st_size;
  entry.modified = modificationTime(status);
  return true;
}

}  // namespace

void listFolder(const std::string& path, ListingDetail detail, const std::function<bool(const char* name)>& wanted,
                const std::function<void(FolderEntry&&)>& visit) {
  const int descriptor = open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK);
  if (descriptor < 0) return;
  const std::unique_ptr<DIR, int (*)(DIR*)> folder(fdopendir(descriptor), closedir);
  if (!folder) {
    close(descriptor);
    return;
  }
  while (const dirent* raw = readdir(folder.get())) {
    FolderEntry entry;
    if (isDots(raw->d_name) || !wanted(raw->d_name) || !examine(descriptor, *raw, detail, entry)) continue;
    entry.name = raw->d_name;
    visit(std::move(entry));
  }
}
