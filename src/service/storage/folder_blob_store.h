#pragma once

#include "service/storage/blob_store.h"

/// Blobs as files in 256 folders by the first two digits of their hash. Bytes come in under another name on the same
/// file system and get their own when they are on the disk whole. A lock on the folder keeps sweeping apart from bytes
/// whose reference is not committed yet.
class FolderBlobStore final : public BlobStore {
 public:
  explicit FolderBlobStore(const QString& folder) : folder_(folder) {}

  /// Makes the folders. Error: for the person who starts the program.
  std::expected<void, QString> prepare();
  /// Removes what a killed service left half received. Only while no other one runs on this folder.
  void removeLeftovers();

  Stored<std::unique_ptr<IncomingBlob>> receive() override;
  Stored<Reading> open(const QString& hash) const override;
  Stored<int> sweep(const References& references) override;
  qint64 available() const override;

 private:
  Stored<int> sweepFolder(const QString& prefix, const References& references);

  QString folder_;
};
