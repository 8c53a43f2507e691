#pragma once

#include <optional>
#include <vector>

#include "service/links/link.h"
#include "service/storage/blob_store.h"
#include "service/storage/write_queue.h"

/// The links in the database. Any thread.
class LinkStore {
 public:
  explicit LinkStore(Database& database) : database_(database) {}

  /// A statement for a write.
  static Stored<void> insert(Connection& connection, const Link& link);
  /// Also one that has expired; nothing: there never was such a link, or it was forgotten.
  Stored<std::optional<Link>> find(const QString& id) const;
  /// Whether it was there.
  static Stored<bool> remove(Connection& connection, const QString& id);
  /// The blobs of links that have not expired and of images in reports.
  Stored<QSet<QString>> references(const QString& prefix, qint64 now) const;
  /// Links that expired a month ago: until then they answer that they have expired.
  static Stored<void> forget(Connection& connection, qint64 now);

 private:
  Database& database_;
};
