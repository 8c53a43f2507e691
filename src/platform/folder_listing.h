#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

using FileTime = std::chrono::sys_time<std::chrono::nanoseconds>;

/// What one entry of a folder is, links to files followed. Paths and names are the file system's own bytes.
struct FolderEntry {
  enum class Kind { file, folder, other };

  std::string name;
  Kind kind = Kind::other;
  /// Of files only.
  std::int64_t size = 0;
  FileTime modified;
};

/// What of an entry has to be known; what is not asked for costs no system call where the folder itself tells.
enum class ListingDetail { namesOnly, kindOfAll, sizesOfFiles };

/// Calls `visit` for every entry of a folder but "." and "..", in no order. Entries that vanish meanwhile and links
/// that lead nowhere are left out, links to folders count as `other` (so that no loop can be walked); a folder that
/// cannot be read has no entries. `wanted` sees each name first: an entry that it refuses is not looked at.
void listFolder(const std::string& path, ListingDetail detail, const std::function<bool(const char* name)>& wanted,
                const std::function<void(FolderEntry&&)>& visit);
