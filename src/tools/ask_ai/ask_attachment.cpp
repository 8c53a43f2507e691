#include "tools/ask_ai/ask_attachment.h"

#include <QFileInfo>

#include <cmath>

#include "base/regular_file.h"
#include "base/visible_text.h"
#include "capture/image_decoding.h"
#include "capture/png_encoding.h"

using namespace Qt::StringLiterals;

namespace {

/// In bytes; what is larger is no picture that one asks about.
constexpr qint64 kLargestFile = 256'000'000;
/// Six of them are less than the built-in service takes with a question; a capture of a whole screen is far below it.
constexpr qsizetype kLargestPNG = 9'500'000;
constexpr double kMostPixels = 3840.0 * 2160.0;
constexpr int kThumbnail = 3 * 56;
/// Of a file's name, in messages.
constexpr qsizetype kShown = 80;

QImage fitting(const QImage& picture) {
  const double pixels = static_cast<double>(picture.width()) * picture.height();
  if (pixels <= kMostPixels) return picture;
  const double scale = std::sqrt(kMostPixels / pixels);
  const QSize size(static_cast<int>(picture.width() * scale), static_cast<int>(picture.height() * scale));
  return picture.scaled(size.expandedTo({1, 1}), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

QImage thumbnailOf(const QImage& picture) {
  if (picture.width() <= kThumbnail && picture.height() <= kThumbnail) return picture;
  return picture.scaled(kThumbnail, kThumbnail, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

/// A photograph of as many pixels as a screen has may still be too large.
QByteArray sendable(QImage picture) {
  QByteArray png = pngWithTransparency(picture);
  for (; png.size() > kLargestPNG; png = pngWithTransparency(picture))
    picture = picture.scaled(picture.size() * 0.7, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  return png;
}

MadeAttachment encoded(const QImage& picture) {
  AskAttachment attachment{0, sendable(fitting(picture)), thumbnailOf(picture)};
  if (attachment.png.isEmpty()) return std::unexpected(u"This image cannot be encoded."_s);
  return attachment;
}

std::unexpected<QString> unreadable(const QString& name, const QString& reason) {
  return std::unexpected(u"%1 cannot be attached: %2"_s.arg(visibleLine(name, kShown), reason));
}

}  // namespace

MadeAttachment attachmentOf(const QByteArray& bytes) {
  const QImage picture = decodedImage(bytes);
  if (picture.isNull()) return std::unexpected(u"This is not an image that can be read."_s);
  if (isPNG(bytes) && bytes.size() <= kLargestPNG) return AskAttachment{0, bytes, thumbnailOf(picture)};
  return encoded(picture);
}

MadeAttachment attachmentOfFile(const QString& path) {
  const QString name = QFileInfo(path).fileName();
  const QString target = QFileInfo(path).canonicalFilePath();
  if (target.isEmpty()) return unreadable(name, u"there is no such file"_s);
  const auto file = openRegularFile(target);
  if (!file) return unreadable(name, file.error().reason);
  if ((*file)->size() > kLargestFile) return unreadable(name, u"it is larger than 256 MB"_s);
  const auto made = attachmentOf((*file)->read(kLargestFile));
  return made ? made : unreadable(name, u"it is not an image that can be read"_s);
}

MadeAttachment attachmentOf(const QImage& picture) {
  if (picture.isNull()) return std::unexpected(u"This is not an image that can be read."_s);
  return encoded(picture);
}
