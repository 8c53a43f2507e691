#include "platform/zip/zip_entries.h"

#include <QFile>

#include <algorithm>
#include <cerrno>

#include "platform/folder_listing.h"

namespace {

class Walk {
 public:
  explicit Walk(const std::stop_token& stop) : stop_(stop) {}

  /// False: `error` says why not.
  bool visit(std::string path, std::string name, bool followsLink) {
    if (stop_.stop_requested()) return true;
    struct stat status{};
    if ((followsLink ? stat : lstat)(path.c_str(), &status) != 0) return fail(path);
    if (S_ISDIR(status.st_mode)) return visitFolder(std::move(path), std::move(name), status);
    if (S_ISREG(status.st_mode))
      add({std::move(path), std::move(name), ZipEntry::Kind::file, status.st_size}, status);
    else if (S_ISLNK(status.st_mode))
      add({std::move(path), std::move(name), ZipEntry::Kind::link}, status);
    return true;
  }

  std::vector<ZipEntry> entries;
  ArchiveError error;

 private:
  bool visitFolder(std::string path, std::string name, const struct stat& status) {
    if (access(path.c_str(), R_OK | X_OK) != 0) return fail(path);
    std::vector<std::string> names;
    listFolder(
        path, ListingDetail::namesOnly, [](const char*) { return true; },
        [&names](FolderEntry&& entry) { names.push_back(std::move(entry.name)); });
    std::ranges::sort(names);
    name += '/';
    add({path, name, ZipEntry::Kind::folder}, status);
    return std::ranges::all_of(
        names, [&](const std::string& child) { return visit(path + '/' + child, name + utf8(child), false); });
  }

  void add(ZipEntry entry, const struct stat& status) {
    entry.modified = status.st_mtime;
    entry.mode = status.st_mode;
    entries.push_back(std::move(entry));
  }

  bool fail(const std::string& path) {
    error = archiveError(path, errno);
    return false;
  }

  /// Names on the disk are bytes; in the archive they must be text.
  static std::string utf8(const std::string& name) { return QString::fromUtf8(name.c_str()).toStdString(); }

  const std::stop_token& stop_;
};

}  // namespace

ArchiveError archiveError(const std::string& path, int error) {
  return {false, QFile::decodeName(path.c_str()) + QStringLiteral(": ") + qt_error_string(error)};
}

std::expected<std::vector<ZipEntry>, ArchiveError> listEntries(const std::vector<ArchiveItem>& items,
                                                               const std::stop_token& stop) {
  Walk walk(stop);
  for (const ArchiveItem& item : items)
    if (!walk.visit(QFile::encodeName(item.path).toStdString(), item.name.toStdString(), true))
      return std::unexpected(walk.error);
  return std::move(walk.entries);
}
