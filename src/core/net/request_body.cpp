#include "core/net/request_body.h"

#include <QFileInfo>

#include <algorithm>
#include <cstring>

#include "base/regular_file.h"

namespace {

qint64 copyFrom(const QByteArray& bytes, qint64 at, char* data, qint64 most) {
  const qint64 length = std::min(most, bytes.size() - at);
  std::memcpy(data, bytes.constData() + at, static_cast<std::size_t>(length));
  return length;
}

}  // namespace

std::expected<std::shared_ptr<RequestBody>, FileError> RequestBody::around(const QByteArray& before,
                                                                           const QString& path,
                                                                           const QByteArray& after) {
  // What the user has chosen may be a link to the file.
  const QString target = QFileInfo(path).canonicalFilePath();
  auto file = openRegularFile(target.isEmpty() ? path : target);
  if (!file) return std::unexpected(FileError{path, file.error().reason});
  std::shared_ptr<RequestBody> body(new RequestBody(before, std::move(*file), after));
  // The network layer reads in pieces of its own; another buffer would be one copy more.
  body->open(QIODevice::ReadOnly | QIODevice::Unbuffered);
  return body;
}

RequestBody::RequestBody(QByteArray before, std::unique_ptr<QFile> file, QByteArray after)
    : before_(std::move(before)), file_(std::move(file)), fileSize_(file_->size()), after_(std::move(after)) {}

qint64 RequestBody::readData(char* data, qint64 most) {
  qint64 taken = 0;
  while (taken < most && pos() + taken < size()) {
    const qint64 piece = readPiece(pos() + taken, data + taken, most - taken);
    if (piece <= 0) return taken > 0 ? taken : -1;
    taken += piece;
  }
  return taken;
}

qint64 RequestBody::readPiece(qint64 at, char* data, qint64 most) {
  if (at < before_.size()) return copyFrom(before_, at, data, most);
  at -= before_.size();
  if (at >= fileSize_) return copyFrom(after_, at - fileSize_, data, most);
  if (file_->pos() != at && !file_->seek(at)) return -1;
  return file_->read(data, std::min(most, fileSize_ - at));
}
