#pragma once

#include "platform/archiver.h"

/// Writes zip archives with a thread for each core: files are compressed in blocks, many at a time, and written in
/// their order. The files' bytes are never held as a whole; each entry needs a few hundred bytes.
class ZipArchiver final : public Archiver {
 public:
  std::expected<void, ArchiveError> pack(const std::vector<ArchiveItem>& items, const QString& target,
                                         ArchiveProgress& progress, const std::stop_token& stop) override;
};
