#include "tools/generate_image/image_reference_reader.h"

#include <QFileInfo>

#include "base/regular_file.h"
#include "capture/image_decoding.h"
#include "capture/png_encoding.h"

namespace {

constexpr qint64 kLargestFile = 64'000'000;
/// More is more than any model looks at.
constexpr int kLongestEdge = 4096;

}  // namespace

std::optional<PreparedReference> preparedReference(const QByteArray& bytes, int thumbnailEdge) {
  QImage picture = decodedImage(bytes);
  if (picture.isNull()) return std::nullopt;
  const QSize most(kLongestEdge, kLongestEdge);
  const bool isTooLarge = picture.width() > kLongestEdge || picture.height() > kLongestEdge;
  if (isTooLarge) picture = picture.scaled(most, Qt::KeepAspectRatio, Qt::SmoothTransformation);
  PreparedReference reference{isPNG(bytes) && !isTooLarge ? bytes : pngWithTransparency(picture), {}};
  const QSize small(thumbnailEdge, thumbnailEdge);
  reference.thumbnail = picture.scaled(small, Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);
  if (reference.png.isEmpty()) return std::nullopt;
  return reference;
}

QByteArray imageFileContents(const QString& path) {
  const auto file = openRegularFile(QFileInfo(path).canonicalFilePath());
  if (!file || (*file)->size() > kLargestFile) return {};
  return (*file)->read(kLargestFile);
}
