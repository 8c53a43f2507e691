#pragma once

#include <QByteArray>
#include <QSet>

#include <functional>
#include <memory>
#include <string_view>

#include "service/storage/descriptor.h"
#include "service/storage/storage_error.h"

/// Bytes that are kept but that nothing refers to yet. They are not swept while this lives: commit the reference first.
struct KeptBlob {
  /// SHA-256, 64 hexadecimal digits.
  QString hash;
  qint64 size = 0;
  Descriptor hold;
};

/// Bytes on their way in. Destroyed before `keep`, it leaves nothing behind.
class IncomingBlob {
 public:
  virtual ~IncomingBlob() = default;

  virtual Stored<void> write(std::string_view bytes) = 0;
  virtual qint64 size() const = 0;
  /// Whole and on the disk when it returns.
  virtual Stored<KeptBlob> keep() = 0;
};

/// Bytes by their SHA-256. Any thread, several processes at a time.
class BlobStore {
 public:
  struct Reading {
    Descriptor file;
    qint64 size = 0;
  };
  /// The hashes beginning with two digits that something refers to.
  using References = std::function<Stored<QSet<QString>>(const QString& prefix)>;

  virtual ~BlobStore() = default;

  virtual Stored<std::unique_ptr<IncomingBlob>> receive() = 0;
  virtual Stored<Reading> open(const QString& hash) const = 0;
  /// Removes what nothing refers to; how many that were. What is just being taken in stays for the next time.
  virtual Stored<int> sweep(const References& references) = 0;
  /// In bytes, for those who take more than the disk has left.
  virtual qint64 available() const = 0;
};
