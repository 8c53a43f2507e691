#pragma once

#include <QStringList>

#include "platform/archiver.h"

/// Archives by the system's own ditto, which keeps what Finder knows about files. It takes one folder: the items are
/// copied into one beside the target first, under their names. Tells no progress.
class DittoArchiver final : public Archiver {
 public:
  explicit DittoArchiver(QString program = QStringLiteral("/usr/bin/ditto")) : program_(std::move(program)) {}

  std::expected<void, ArchiveError> pack(const std::vector<ArchiveItem>& items, const QString& target,
                                         ArchiveProgress& progress, const std::stop_token& stop) override;

 private:
  std::expected<void, ArchiveError> stage(const std::vector<ArchiveItem>& items, const QString& folder,
                                          const std::stop_token& stop) const;
  std::expected<void, ArchiveError> run(const QStringList& arguments, const std::stop_token& stop) const;

  QString program_;
};
