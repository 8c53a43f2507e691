#include "core/data/data_removal.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <filesystem>
#include <system_error>

#include "base/folder.h"

using namespace Qt::StringLiterals;
namespace fs = std::filesystem;

namespace {

using Kind = DataRemovalError::Kind;

std::unexpected<DataRemovalError> failure(Kind kind, const QString& path, const QString& reason) {
  return std::unexpected(DataRemovalError{kind, {path, reason}});
}

/// Lets every folder of a tree be emptied: one that the user has locked would keep what is in it.
void unlock(const fs::path& folder) {
  std::error_code error;
  fs::permissions(folder, fs::perms::owner_all, fs::perm_options::add, error);
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    std::error_code ignored;
    if (fs::is_directory(entry->symlink_status(ignored))) unlock(entry->path());
  }
}

std::expected<void, DataRemovalError> removeTree(const QString& path) {
  const fs::path tree(path.toStdString());
  std::error_code error;
  if (fs::is_directory(fs::symlink_status(tree, error))) unlock(tree);
  fs::remove_all(tree, error);
  if (error) return failure(Kind::failed, path, QString::fromStdString(error.message()));
  return {};
}

}  // namespace

QString DataRemovalError::description() const {
  if (kind == Kind::link)
    return u"%1 is a link to another place. Nothing was deleted: remove the link, or what it leads to, yourself."_s.arg(
        cause.path);
  return u"Nothing was deleted: %1"_s.arg(cause.description());
}

std::expected<void, DataRemovalError> DataRemoval::check() const {
  const QFileInfo data(folders_.vantle());
  if (data.isSymLink()) return failure(Kind::link, data.filePath(), {});
  if (data.exists() && !data.isDir()) return failure(Kind::failed, data.filePath(), u"not a folder"_s);
  if (!QFileInfo(folders_.applicationSupport).isWritable())
    return failure(Kind::failed, folders_.applicationSupport, u"the folder cannot be changed"_s);
  return {};
}

std::expected<void, DataRemovalError> DataRemoval::putAside() const {
  if (auto allowed = check(); !allowed) return allowed;
  // What an earlier deletion left would be in the way.
  if (auto removed = removeTree(aside()); !removed) return removed;
  if (!QFileInfo::exists(folders_.vantle())) makePrivateFolder(folders_.vantle());
  std::error_code error;
  fs::rename(folders_.vantle().toStdString(), aside().toStdString(), error);
  if (error) return failure(Kind::failed, folders_.vantle(), QString::fromStdString(error.message()));
  makePrivateFolder(folders_.vantle());
  return {};
}

std::expected<void, DataRemovalError> DataRemoval::finish() const {
  const QFileInfo rest(aside());
  if (!rest.exists() && !rest.isSymLink()) return {};
  QFile::remove(defaults_);
  QDir().rmdir(QFileInfo(defaults_).path());
  return removeTree(aside());
}

/// Beside the folder, where a rename is one step; hidden, and named so that nobody else's can be meant.
QString DataRemoval::aside() const { return folders_.applicationSupport + u"/.vantle-deleted-data"_s; }
