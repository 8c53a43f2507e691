#pragma once

#include <QString>

#include <expected>

#include "base/file_error.h"
#include "core/settings/folders.h"

/// Why the data cannot be deleted. `description()` is the only text made from it.
struct DataRemovalError {
  enum class Kind {
    /// The data folder is a link: what it leads to is not ours to delete.
    link,
    failed,
  };
  Kind kind = Kind::failed;
  FileError cause{};

  QString description() const;
};

/// Deletes Vantle's folder and the user defaults, in two steps: the folder is put aside by one rename, so that whenever
/// the process dies there is all of the data or none of it, and what was put aside is deleted then, or at the next
/// start. Links inside are removed, not followed. Blocks; main thread only.
class DataRemoval {
 public:
  /// `defaults`: the file of the user defaults.
  DataRemoval(Folders folders, QString defaults) : folders_(std::move(folders)), defaults_(std::move(defaults)) {}

  /// Whether the data may and can be deleted. Changes nothing.
  std::expected<void, DataRemovalError> check() const;
  /// The first step. An empty folder takes the place, so that no data of an earlier version moves in. Whoever writes
  /// afterwards writes new data.
  std::expected<void, DataRemovalError> putAside() const;
  /// The second step; nothing to do when nothing was put aside. To be called when nobody holds the defaults.
  std::expected<void, DataRemovalError> finish() const;

 private:
  QString aside() const;

  Folders folders_;
  QString defaults_;
};
