#pragma once

#include "service/storage/connection.h"

/// Brings the tables of a database to this program's version, each step whole or not at all. Two programs that do so at
/// once wait for each other.
class Schema {
 public:
  /// Error: it cannot be reached, or a newer program made it.
  static std::expected<void, QString> migrate(Connection& connection);
  static int newest();
};
