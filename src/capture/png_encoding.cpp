#include "capture/png_encoding.h"

#include <QBuffer>
#include <QImageWriter>

#include <csetjmp>

#include <png.h>

namespace {

constexpr int kBitsPerColour = 8;
/// The quickest that still compresses.
constexpr int kLevel = 1;
/// The same in the words of Qt, which divides 0 to 100 into these levels.
constexpr int kWriterLevel = 20;
/// Room for a screen of text; grows by itself.
constexpr qsizetype kFirstRoom = 1 << 20;
constexpr std::size_t kBuffer = 1 << 18;

static_assert(Q_BYTE_ORDER == Q_LITTLE_ENDIAN, "a pixel is blue, green, red and padding in this order");

void append(png_structp writer, png_bytep data, std::size_t size) {
  static_cast<QByteArray*>(png_get_io_ptr(writer))
      ->append(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
}

/// An error of the library's jumps back into this function, so it holds nothing that must be destroyed.
bool writePicture(png_structp writer, png_infop info, const QImage& picture) {
  if (setjmp(png_jmpbuf(writer)) != 0) return false;
  png_set_IHDR(writer, info, static_cast<png_uint_32>(picture.width()), static_cast<png_uint_32>(picture.height()),
               kBitsPerColour, PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
               PNG_FILTER_TYPE_DEFAULT);
  png_set_compression_level(writer, kLevel);
  png_set_compression_buffer_size(writer, kBuffer);
  // Trying all filters on each line costs more than the compression. This one halves photographs and hurts text little.
  png_set_filter(writer, PNG_FILTER_TYPE_BASE, PNG_FILTER_SUB);
  png_write_info(writer, info);
  png_set_bgr(writer);
  png_set_filler(writer, 0, PNG_FILLER_AFTER);
  for (int y = 0; y < picture.height(); ++y) png_write_row(writer, picture.constScanLine(y));
  png_write_end(writer, info);
  return true;
}

}  // namespace

QByteArray pngOf(const QImage& pixels) {
  const QImage picture = pixels.convertToFormat(QImage::Format_RGB32);
  png_structp writer = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  if (!writer) return {};
  png_infop info = png_create_info_struct(writer);
  QByteArray bytes;
  bytes.reserve(kFirstRoom);
  png_set_write_fn(writer, &bytes, append, nullptr);
  const bool done = info && !picture.isNull() && writePicture(writer, info, picture);
  png_destroy_write_struct(&writer, &info);
  return done ? bytes : QByteArray();
}

QByteArray pngWithTransparency(const QImage& pixels) {
  if (!pixels.hasAlphaChannel()) return pngOf(pixels);
  QByteArray bytes;
  QBuffer file(&bytes);
  QImageWriter writer(&file, "png");
  writer.setCompression(kWriterLevel);
  return writer.write(pixels) ? bytes : QByteArray();
}
