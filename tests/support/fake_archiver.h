#pragma once

#include <QFile>
#include <QFileInfo>

#include <condition_variable>
#include <mutex>
#include <optional>

#include "platform/archiver.h"

/// Writes a few bytes in place of an archive. `holds` makes it wait until it is told to stop.
class FakeArchiver final : public Archiver {
 public:
  std::expected<void, ArchiveError> pack(const std::vector<ArchiveItem>& items, const QString& target,
                                         ArchiveProgress& progress, const std::stop_token& stop) override {
    packed = items;
    folderPermissions = QFileInfo(QFileInfo(target).path()).permissions();
    progress.totalBytes = 100;
    progress.bytes = 50;
    QFile file(target);
    if (!file.open(QFile::WriteOnly) || file.write("PK") != 2)
      return std::unexpected(ArchiveError{.message = file.errorString()});
    if (holds) waitForStop(stop);
    file.close();
    if (error || stop.stop_requested()) {
      file.remove();
      return std::unexpected(error ? *error : ArchiveError{.wasCancelled = true});
    }
    return {};
  }

  bool holds = false;
  std::optional<ArchiveError> error;
  /// To be read when it has answered.
  std::vector<ArchiveItem> packed;
  QFile::Permissions folderPermissions;

 private:
  static void waitForStop(const std::stop_token& stop) {
    std::mutex mutex;
    std::unique_lock lock(mutex);
    std::condition_variable_any().wait(lock, stop, [] { return false; });
  }
};
