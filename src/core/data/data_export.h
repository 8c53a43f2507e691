#pragma once

#include <QDate>
#include <QString>
#include <QStringList>

#include <expected>
#include <stop_token>

#include "base/file_error.h"

/// Why nothing was exported. `description()` is the only text made from it.
struct DataExportError {
  enum class Kind {
    nothingThere,
    /// The chosen folder lies within the data.
    insideTheData,
    unreadable,
    notWritten,
    cancelled,
  };
  Kind kind = Kind::notWritten;
  FileError cause{};

  QString description() const;
};

struct ExportedData {
  /// The new folder.
  QString folder;
  int files = 0;
  /// Paths within the data that were not copied: links, pipes, and what may hold a credential and cannot be read.
  QStringList leftOut;
};

/// A copy of everything in Vantle's folder, in a new folder "Vantle export 2026-11-21" (numbered when there is one).
///
/// It appears whole or not at all: what is copied stands under a hidden name until the end, and is removed on any
/// failure. Credentials in settings files are replaced by empty texts. Touches nothing else, so it may run on any
/// thread.
class DataExport {
 public:
  DataExport(QString data, QString destination, QDate day)
      : data_(std::move(data)), destination_(std::move(destination)), day_(day) {}

  /// Blocks until it is done.
  std::expected<ExportedData, DataExportError> run(const std::stop_token& stop) const;

 private:
  std::expected<void, DataExportError> check() const;
  std::expected<QString, DataExportError> putInPlace(const QString& partial) const;

  QString data_;
  QString destination_;
  QDate day_;
};
