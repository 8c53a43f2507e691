#pragma once

#include <QString>

#include <atomic>
#include <cstdint>
#include <expected>
#include <memory>
#include <stop_token>
#include <vector>

/// A file or folder and the name it is to have in an archive, at its top level.
struct ArchiveItem {
  QString path;
  QString name;
};

/// How far an archive is; written by the threads that pack, read by any.
struct ArchiveProgress {
  std::atomic<std::int64_t> bytes = 0;
  /// 0 until everything has been listed.
  std::atomic<std::int64_t> totalBytes = 0;
};

/// Why there is no archive.
struct ArchiveError {
  /// The user's wish, nothing to report.
  bool wasCancelled = false;
  QString message{};

  QString description() const { return wasCancelled ? QStringLiteral("cancelled") : message; }
};

/// Packs files into zip archives.
class Archiver {
 public:
  virtual ~Archiver() = default;

  /// Packs `items`, folders with all that is in them, into a new file at `target`, whose folder is the caller's own.
  /// Links in folders stay links; pipes, sockets and devices are left out. On an error, or when asked to stop, nothing
  /// is left at `target`. Blocking: for a background thread.
  virtual std::expected<void, ArchiveError> pack(const std::vector<ArchiveItem>& items, const QString& target,
                                                 ArchiveProgress& progress, const std::stop_token& stop) = 0;
};

/// The archiver of this system.
std::unique_ptr<Archiver> makeArchiver();
