#pragma once

#include <QString>

#include <expected>

/// Why something could not be stored or read. `detail` is the system's or the database's own text, for the log only.
struct StorageError {
  enum class Reason { unavailable, full, conflict };

  Reason reason = Reason::unavailable;
  QString detail;

  /// For whoever asked the service.
  QString description() const;
  /// From errno; a limit on the size of files counts as a full disk.
  static StorageError fromErrno(const QString& what, int number);
};

template <typename Value>
using Stored = std::expected<Value, StorageError>;
