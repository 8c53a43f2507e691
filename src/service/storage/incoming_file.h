#pragma once

#include <openssl/evp.h>

#include "service/storage/blob_store.h"

/// A file in "incoming" that is hashed while it is written.
class IncomingFile final : public IncomingBlob {
 public:
  static Stored<std::unique_ptr<IncomingFile>> make(const QString& folder);
  ~IncomingFile() override;
  IncomingFile(const IncomingFile&) = delete;
  IncomingFile& operator=(const IncomingFile&) = delete;

  Stored<void> write(std::string_view bytes) override;
  qint64 size() const override { return size_; }
  Stored<KeptBlob> keep() override;

 private:
  struct EndDigest {
    void operator()(EVP_MD_CTX* digest) const { EVP_MD_CTX_free(digest); }
  };

  IncomingFile(const QString& folder, QByteArray path, Descriptor file);
  QString finishHash();
  StorageError failed() const;

  QString folder_;
  /// Empty once it bears its own name.
  QByteArray path_;
  Descriptor file_;
  std::unique_ptr<EVP_MD_CTX, EndDigest> digest_;
  qint64 size_ = 0;
};
