#pragma once

#include <QFile>
#include <QIODevice>

#include <expected>
#include <memory>

#include "base/file_error.h"

/// The body of a request that is read from the disk while it is sent: a file between two pieces of bytes. Its length
/// is fixed when it is opened; a file that has become shorter since ends the request with an error.
class RequestBody final : public QIODevice {
  Q_OBJECT

 public:
  /// Error: `path` cannot be opened, or is no regular file.
  static std::expected<std::shared_ptr<RequestBody>, FileError> around(const QByteArray& before, const QString& path,
                                                                       const QByteArray& after);

  qint64 size() const override { return before_.size() + fileSize_ + after_.size(); }
  bool isSequential() const override { return false; }

 protected:
  qint64 readData(char* data, qint64 most) override;
  qint64 writeData(const char*, qint64) override { return -1; }

 private:
  RequestBody(QByteArray before, std::unique_ptr<QFile> file, QByteArray after);
  qint64 readPiece(qint64 at, char* data, qint64 most);

  QByteArray before_;
  std::unique_ptr<QFile> file_;
  qint64 fileSize_;
  QByteArray after_;
};
