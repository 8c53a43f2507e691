#pragma once

#include "service/command/arguments.h"
#include "service/storage/database.h"
#include "service/storage/folder_blob_store.h"

/// Where the service keeps what it gets, as the command line names it.
class Place {
 public:
  /// Makes the folder and brings the database to this version. Error: for the person at the command line.
  static std::expected<std::unique_ptr<Place>, QString> open(const Arguments& arguments);
  /// The options that name it.
  static QStringList options();

  Database& database() { return database_; }
  FolderBlobStore& blobs() { return blobs_; }
  const QString& folder() const { return folder_; }
  /// So that one service runs on the folder at a time; waits a moment for one that is just ending. False: there is one.
  bool lock();

 private:
  Place(const QString& folder, const DatabaseLocation& location)
      : folder_(folder), database_(location), blobs_(folder) {}

  QString folder_;
  Database database_;
  FolderBlobStore blobs_;
  Descriptor lock_;
};
