#pragma once

#include <thread>

#include "service/links/link_store.h"

/// Removes what has expired, and bytes that nothing refers to any more: at the start, then every hour.
class Maintenance {
 public:
  Maintenance(Database& database, BlobStore& blobs);

  /// One round, on this thread. How many blobs went.
  static Stored<int> purge(Database& database, BlobStore& blobs);

 private:
  void work(const std::stop_token& stop);

  Database& database_;
  BlobStore& blobs_;
  std::jthread thread_;
};
