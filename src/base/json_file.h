#pragma once

#include <QJsonDocument>
#include <QString>

#include <expected>

#include "base/file_error.h"

/// One JSON file of the user's: bounded reads, atomic writes, and nothing unreadable ever overwritten.
///
/// A file that could not be read whole is set aside as "<name>.corrupt" before the first write replaces it.
/// Folders are made with mode 0700, files written with mode 0600, indented and with sorted keys.
class JsonFile {
 public:
  /// The largest file that is read, in bytes: a hundred times what the largest store of a heavy user holds.
  static constexpr qint64 kMaximumSize = 16 * 1024 * 1024;

  explicit JsonFile(QString path);

  const QString& path() const { return path_; }

  /// The parsed document; a null document when there is no file. Errors: unreadable, too large, not a regular file, not
  /// JSON.
  std::expected<QJsonDocument, FileError> read();
  /// Says that the contents, though JSON, were not understood whole: the next write sets the file aside first.
  void keepBeforeOverwriting() { keepOld_ = true; }
  /// Replaces the file atomically. On an error the old file is still there, whole.
  std::expected<void, FileError> write(const QJsonDocument& document);

 private:
  std::expected<QByteArray, FileError> readBytes();
  std::expected<void, FileError> setAside();

  QString path_;
  bool keepOld_ = false;
};
