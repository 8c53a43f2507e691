#pragma once

#include <QLockFile>
#include <QStringList>

#include <expected>
#include <memory>

#include "base/file_error.h"
#include "platform/archiver.h"

/// A folder for one archive in the system's temporary folder: only the user can look into it, and it goes with this
/// object. A lock in it says that its program still runs.
class ArchiveFolder {
 public:
  static std::expected<std::unique_ptr<ArchiveFolder>, FileError> make(const QString& temporaryFolder);
  ~ArchiveFolder() { remove(); }
  ArchiveFolder(const ArchiveFolder&) = delete;
  ArchiveFolder& operator=(const ArchiveFolder&) = delete;

  QString file(const QString& name) const { return path_ + u'/' + name; }

  /// Deletes it ahead of time.
  void remove();

  /// Deletes what programs have left behind that were killed. Others' folders, and those in use, stay.
  static void removeLeftovers(const QString& temporaryFolder);

 private:
  explicit ArchiveFolder(const QString& path);

  QString path_;
  QLockFile lock_;
};

/// The items under their last path components; a name that is taken, in any case of letters, gets a counter from 2 on
/// before its extension ("notes-2.txt").
std::vector<ArchiveItem> archiveItems(const QStringList& paths);
