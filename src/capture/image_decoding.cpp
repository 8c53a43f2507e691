#include "capture/image_decoding.h"

#include <QBuffer>
#include <QImageReader>

#include <algorithm>
#include <array>

namespace {

constexpr qint64 kMostPixels = 100'000'000;
/// For what does not tell its size before it is decoded, in MB: as many pixels of four bytes.
constexpr int kLargestPicture = 400;

/// Drawings are left out: they have no size of their own, and theirs are the costliest parsers.
constexpr std::array<QByteArrayView, 14> kPixelFormats = {"avif", "bmp", "gif", "heic", "heif", "ico",  "jp2",
                                                          "jpeg", "png", "pbm", "pgm",  "ppm",  "tiff", "webp"};

void boundAllocations() {
  static const bool isBound = [] {
    QImageReader::setAllocationLimit(kLargestPicture);
    return true;
  }();
  Q_UNUSED(isBound);
}

bool isKnown(const QByteArray& format) {
  return std::ranges::find(kPixelFormats, QByteArrayView(format)) != kPixelFormats.end();
}

}  // namespace

QByteArray pixelFormat(const QByteArray& bytes) {
  QBuffer file;
  file.setData(bytes);
  const QByteArray format = file.open(QIODevice::ReadOnly) ? QImageReader::imageFormat(&file) : QByteArray();
  return isKnown(format) ? format : QByteArray();
}

QImage decodedImage(const QByteArray& bytes) {
  boundAllocations();
  QBuffer file;
  file.setData(bytes);
  if (!file.open(QIODevice::ReadOnly)) return {};
  QImageReader reader(&file);
  reader.setDecideFormatFromContent(true);
  reader.setAutoTransform(true);
  if (!isKnown(reader.format())) return {};
  const QSize size = reader.size();
  if (size.isValid() && qint64{size.width()} * size.height() > kMostPixels) return {};
  return reader.read();
}

bool isPNG(const QByteArray& bytes) { return bytes.startsWith("\x89PNG\r\n\x1a\n"); }
