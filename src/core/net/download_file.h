#pragma once

#include <QCryptographicHash>
#include <QFile>

#include <expected>
#include <memory>

#include "base/file_error.h"

/// A file that is being downloaded: it grows beside its place, which it takes when it is whole, and leaves nothing
/// behind when it never is. A program that is killed leaves the part; whoever downloads next to it looks for that.
class DownloadFile final : public QIODevice {
  Q_OBJECT

 public:
  /// What the name of a part ends in.
  static constexpr QLatin1StringView kPart{".part"};

  /// Opened for writing, for nobody but the user; missing folders are made. Error: it cannot be.
  static std::expected<std::shared_ptr<DownloadFile>, FileError> beside(const QString& path);
  ~DownloadFile() override { discard(); }

  bool isSequential() const override { return true; }
  /// SHA-256 of what has come, 32 bytes.
  QByteArray digest() const { return hash_.result(); }
  /// Puts it in its place, instead of what is there. Error: it cannot be, and the part is gone.
  std::expected<void, FileError> finish();
  /// Takes nothing more, and removes the part.
  void discard();

 protected:
  qint64 readData(char*, qint64) override { return -1; }
  qint64 writeData(const char* data, qint64 length) override;

 private:
  explicit DownloadFile(const QString& path) : path_(path), part_(path + kPart) {}

  QString path_;
  QFile part_;
  QCryptographicHash hash_{QCryptographicHash::Sha256};
};
