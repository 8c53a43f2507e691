#include "service/storage/incoming_file.h"

#include <QFile>

#include <fcntl.h>
#include <sys/file.h>

#include <array>
#include <cerrno>
#include <cstdio>

#include "service/accounts/secret.h"

using namespace Qt::StringLiterals;

IncomingFile::IncomingFile(const QString& folder, QByteArray path, Descriptor file)
    : folder_(folder), path_(std::move(path)), file_(std::move(file)), digest_(EVP_MD_CTX_new()) {
  EVP_DigestInit_ex(digest_.get(), EVP_sha256(), nullptr);
}

IncomingFile::~IncomingFile() {
  if (!path_.isEmpty()) unlink(path_.constData());
}

Stored<std::unique_ptr<IncomingFile>> IncomingFile::make(const QString& folder) {
  const QByteArray path = QFile::encodeName(folder + u"/incoming/"_s) + makeSecret();
  constexpr mode_t kMode = 0600;
  Descriptor file(open(path.constData(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, kMode));
  if (!file) return std::unexpected(StorageError::fromErrno(QFile::decodeName(path), errno));
  return std::unique_ptr<IncomingFile>(new IncomingFile(folder, path, std::move(file)));
}

StorageError IncomingFile::failed() const { return StorageError::fromErrno(QFile::decodeName(path_), errno); }

Stored<void> IncomingFile::write(std::string_view bytes) {
  EVP_DigestUpdate(digest_.get(), bytes.data(), bytes.size());
  while (!bytes.empty()) {
    const ssize_t written = ::write(file_.number(), bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return std::unexpected(failed());
    bytes.remove_prefix(static_cast<std::size_t>(written));
    size_ += written;
  }
  return {};
}

QString IncomingFile::finishHash() {
  std::array<unsigned char, EVP_MAX_MD_SIZE> bytes{};
  unsigned size = 0;
  EVP_DigestFinal_ex(digest_.get(), bytes.data(), &size);
  return QString::fromLatin1(QByteArray(reinterpret_cast<const char*>(bytes.data()), static_cast<int>(size)).toHex());
}

Stored<KeptBlob> IncomingFile::keep() {
  if (fsync(file_.number()) != 0) return std::unexpected(failed());
  const QString hash = finishHash();
  const QByteArray folder = QFile::encodeName(folder_ + u"/blobs/"_s + hash.left(2));
  Descriptor hold(open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!hold || flock(hold.number(), LOCK_SH) != 0) return std::unexpected(failed());
  const QByteArray target = folder + '/' + hash.toLatin1();
  if (std::rename(path_.constData(), target.constData()) != 0) return std::unexpected(failed());
  path_.clear();
  if (fsync(hold.number()) != 0) return std::unexpected(failed());
  return KeptBlob{hash, size_, std::move(hold)};
}
