#pragma once

#include "service/storage/connection.h"
#include "service/storage/database_location.h"

/// Where the database is, and each thread's own connection to it. Any thread. Outlives the threads that use it, or is
/// at least not used by them any more.
class Database {
 public:
  explicit Database(DatabaseLocation location);
  ~Database();
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  /// This thread's connection, opened at its first use and closed with the thread.
  Connection& connection();

 private:
  DatabaseLocation location_;
  /// Tells this object from an earlier one at the same address.
  quint64 number_;
};
