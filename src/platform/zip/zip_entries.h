#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <ctime>
#include <expected>
#include <functional>
#include <stop_token>
#include <string>
#include <vector>

#include "platform/archiver.h"

/// One entry of an archive that is to be written.
struct ZipEntry {
  enum class Kind { folder, file, link };

  /// On the disk.
  std::string path;
  /// In the archive: UTF-8 with "/" between the parts, and at the end of a folder's.
  std::string name;
  Kind kind = Kind::file;
  /// Bytes; of files only.
  std::int64_t size = 0;
  std::time_t modified = 0;
  mode_t mode = 0;
};

/// What `items` come to, a folder before what is in it, in the order of their names. A link among the items themselves
/// is followed, one within a folder is not. Error: something cannot be read; `stop` ends the walk early.
std::expected<std::vector<ZipEntry>, ArchiveError> listEntries(const std::vector<ArchiveItem>& items,
                                                               const std::stop_token& stop);

/// The error of a system call on a file.
ArchiveError archiveError(const std::string& path, int error);
