#include "cli/image_argument.h"

#include <QFileInfo>

#include <algorithm>
#include <array>

#include "base/regular_file.h"
#include "capture/image_decoding.h"
#include "capture/png_encoding.h"

using namespace Qt::StringLiterals;

namespace {

/// What the services take at most.
constexpr qint64 kLargestImage = 256'000'000;

/// What every browser shows is sent as it is.
struct WebFormat {
  QByteArrayView format;
  QLatin1StringView mimeType;
  QLatin1StringView suffix;
};

constexpr std::array kWebFormats = {
    WebFormat{"png", "image/png"_L1, "png"_L1},
    WebFormat{"jpeg", "image/jpeg"_L1, "jpg"_L1},
    WebFormat{"gif", "image/gif"_L1, "gif"_L1},
    WebFormat{"webp", "image/webp"_L1, "webp"_L1},
};

std::expected<QByteArray, QString> readBounded(QIODevice& source) {
  QByteArray bytes;
  while (bytes.size() <= kLargestImage) {
    const QByteArray piece = source.read(kLargestImage + 1 - bytes.size());
    if (piece.isEmpty()) return bytes;
    bytes += piece;
  }
  return std::unexpected(u"it is larger than 256 MB"_s);
}

std::expected<QByteArray, QString> readSource(const QString& word, const CommandContext& context) {
  if (word == "-"_L1) return context.input ? readBounded(*context.input) : QByteArray();
  const QString path = QFileInfo(word).canonicalFilePath();
  if (path.isEmpty()) return std::unexpected(u"there is no such file"_s);
  const auto file = openRegularFile(path);
  return file ? readBounded(**file) : std::unexpected(file.error().reason);
}

/// Pictures of other kinds become a PNG.
std::expected<ClipboardImage, QString> asImage(const QByteArray& bytes, const QString& baseName) {
  const QByteArray format = pixelFormat(bytes);
  const auto web = std::ranges::find(kWebFormats, QByteArrayView(format), &WebFormat::format);
  if (web != kWebFormats.end()) return ClipboardImage{bytes, baseName + u'.' + web->suffix, web->mimeType};
  const QImage picture = format.isEmpty() ? QImage() : decodedImage(bytes);
  if (picture.isNull()) return std::unexpected(u"this is not an image"_s);
  return ClipboardImage{pngWithTransparency(picture), baseName + u".png"_s, u"image/png"_s};
}

}  // namespace

std::expected<ClipboardImage, QString> readImage(const QString& word, const CommandContext& context) {
  const QString baseName = word == "-"_L1 ? u"image"_s : QFileInfo(word).completeBaseName();
  const auto bytes = readSource(word, context);
  return bytes ? asImage(*bytes, baseName) : std::unexpected(bytes.error());
}

std::expected<QByteArray, QString> readPNG(const QString& word, const CommandContext& context) {
  const auto image = readImage(word, context);
  if (!image) return std::unexpected(image.error());
  if (isPNG(image->data)) return image->data;
  const QImage picture = decodedImage(image->data);
  if (picture.isNull()) return std::unexpected(u"this image is damaged"_s);
  return pngWithTransparency(picture);
}
