#include "platform/x11/x11_screen_image.h"

#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>

#include <xcb/shm.h>
#include <xcb/xcb.h>

#include <QSysInfo>

#include <algorithm>
#include <array>
#include <memory>
#include <optional>

#include "platform/x11/xcb_reply.h"

using namespace Qt::StringLiterals;

namespace {

constexpr std::uint32_t kAllPlanes = 0xFFFFFFFF;

struct Disconnect {
  void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};
using Connection = std::unique_ptr<xcb_connection_t, Disconnect>;

struct Root {
  xcb_window_t window = XCB_WINDOW_NONE;
  QRect pixels;
  QImage::Format format = QImage::Format_Invalid;
  int bytesPerPixel = 4;
  int scanlinePadBytes = 4;

  qsizetype bytesPerLine(int width) const {
    const qsizetype line = static_cast<qsizetype>(width) * bytesPerPixel;
    return (line + scanlinePadBytes - 1) / scanlinePadBytes * scanlinePadBytes;
  }
};

/// How Qt calls what the server calls by depth and masks. A fourth byte is padding: the screen is opaque.
struct PixelFormat {
  int bits;
  std::uint32_t red;
  std::uint32_t blue;
  QImage::Format format;
};
constexpr std::array kPixelFormats = {
    PixelFormat{32, 0xFF0000, 0x0000FF, QImage::Format_RGB32},
    PixelFormat{32, 0x0000FF, 0xFF0000, QImage::Format_RGBX8888},
    PixelFormat{32, 0x3FF00000, 0x000003FF, QImage::Format_RGB30},
    PixelFormat{32, 0x000003FF, 0x3FF00000, QImage::Format_BGR30},
    PixelFormat{16, 0x00F800, 0x00001F, QImage::Format_RGB16},
};

QImage::Format imageFormat(int bits, const xcb_visualtype_t& visual) {
  const auto found = std::ranges::find_if(kPixelFormats, [&](const PixelFormat& each) {
    return each.bits == bits && each.red == visual.red_mask && each.blue == visual.blue_mask;
  });
  return found == kPixelFormats.end() ? QImage::Format_Invalid : found->format;
}

const xcb_visualtype_t* rootVisual(const xcb_screen_t& screen) {
  for (auto depth = xcb_screen_allowed_depths_iterator(&screen); depth.rem > 0; xcb_depth_next(&depth))
    for (auto visual = xcb_depth_visuals_iterator(depth.data); visual.rem > 0; xcb_visualtype_next(&visual))
      if (visual.data->visual_id == screen.root_visual) return visual.data;
  return nullptr;
}

std::optional<xcb_format_t> pixmapFormat(const xcb_setup_t& setup, int depth) {
  for (auto format = xcb_setup_pixmap_formats_iterator(&setup); format.rem > 0; xcb_format_next(&format))
    if (format.data->depth == depth) return *format.data;
  return std::nullopt;
}

/// As it is now: the root of the setup has the size that it had when the connection was made.
QRect rootPixels(xcb_connection_t* connection, xcb_window_t root) {
  const XcbReply<xcb_get_geometry_reply_t> geometry(
      xcb_get_geometry_reply(connection, xcb_get_geometry(connection, root), nullptr));
  return geometry ? QRect(0, 0, geometry->width, geometry->height) : QRect();
}

Root describeRoot(xcb_connection_t* connection, int screenNumber) {
  const xcb_setup_t& setup = *xcb_get_setup(connection);
  auto screens = xcb_setup_roots_iterator(&setup);
  for (; screens.rem > 1 && screenNumber > 0; --screenNumber) xcb_screen_next(&screens);
  const xcb_screen_t& screen = *screens.data;
  const auto format = pixmapFormat(setup, screen.root_depth);
  const xcb_visualtype_t* visual = rootVisual(screen);
  const bool isServerLittle = setup.image_byte_order == XCB_IMAGE_ORDER_LSB_FIRST;
  Root root{.window = screen.root, .pixels = rootPixels(connection, screen.root)};
  if (!format || !visual || isServerLittle != (QSysInfo::ByteOrder == QSysInfo::LittleEndian)) return root;
  root.format = imageFormat(format->bits_per_pixel, *visual);
  root.bytesPerPixel = format->bits_per_pixel / 8;
  root.scanlinePadBytes = format->scanline_pad / 8;
  return root;
}

bool isOnThisMachine(xcb_connection_t* connection) {
  sockaddr address{};
  socklen_t size = sizeof address;
  return getsockname(xcb_get_file_descriptor(connection), &address, &size) == 0 && address.sa_family == AF_UNIX;
}

/// Handing over the memory as a descriptor leaves nothing behind, however this process ends.
bool canShareMemory(xcb_connection_t* connection) {
  const xcb_query_extension_reply_t* extension = xcb_get_extension_data(connection, &xcb_shm_id);
  if (!extension || !extension->present || !isOnThisMachine(connection)) return false;
  const XcbReply<xcb_shm_query_version_reply_t> version(
      xcb_shm_query_version_reply(connection, xcb_shm_query_version(connection), nullptr));
  return version && (version->major_version > 1 || version->minor_version >= 2);
}

/// Memory that the server writes to; unmapped by the image that is made of it.
struct SharedMemory {
  void* address = MAP_FAILED;
  std::size_t size = 0;
};

void unmap(void* memory) {
  const std::unique_ptr<SharedMemory> owned(static_cast<SharedMemory*>(memory));
  munmap(owned->address, owned->size);
}

std::unique_ptr<SharedMemory> mapped(int descriptor, std::size_t size) {
  if (ftruncate(descriptor, static_cast<off_t>(size)) != 0) return nullptr;
  void* const address = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_POPULATE, descriptor, 0);
  if (address == MAP_FAILED) return nullptr;
  return std::make_unique<SharedMemory>(SharedMemory{address, size});
}

bool fill(xcb_connection_t* connection, const Root& root, const QRect& area, int descriptor) {
  const xcb_shm_seg_t segment = xcb_generate_id(connection);
  xcb_shm_attach_fd(connection, segment, descriptor, false);
  const auto cookie =
      xcb_shm_get_image(connection, root.window, static_cast<std::int16_t>(area.x()),
                        static_cast<std::int16_t>(area.y()), static_cast<std::uint16_t>(area.width()),
                        static_cast<std::uint16_t>(area.height()), kAllPlanes, XCB_IMAGE_FORMAT_Z_PIXMAP, segment, 0);
  return XcbReply<xcb_shm_get_image_reply_t>(xcb_shm_get_image_reply(connection, cookie, nullptr)) != nullptr;
}

QImage sharedImage(xcb_connection_t* connection, const Root& root, const QRect& area) {
  const int descriptor = memfd_create("vantle-screen", MFD_CLOEXEC);
  if (descriptor < 0) return {};
  const qsizetype line = root.bytesPerLine(area.width());
  auto memory = mapped(descriptor, static_cast<std::size_t>(line * area.height()));
  if (!memory) {
    close(descriptor);
    return {};
  }
  auto* const pixels = static_cast<uchar*>(memory->address);
  SharedMemory* const owned = memory.release();
  QImage image(pixels, area.width(), area.height(), line, root.format, unmap, owned);
  // The connection closes the descriptor once it is sent.
  return fill(connection, root, area, descriptor) ? image : QImage();
}

void release(void* reply) { std::free(reply); }

QImage sentImage(xcb_connection_t* connection, const Root& root, const QRect& area) {
  const auto cookie =
      xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, root.window, static_cast<std::int16_t>(area.x()),
                    static_cast<std::int16_t>(area.y()), static_cast<std::uint16_t>(area.width()),
                    static_cast<std::uint16_t>(area.height()), kAllPlanes);
  XcbReply<xcb_get_image_reply_t> reply(xcb_get_image_reply(connection, cookie, nullptr));
  const qsizetype line = root.bytesPerLine(area.width());
  if (!reply || xcb_get_image_data_length(reply.get()) < line * area.height()) return {};
  const uchar* const pixels = xcb_get_image_data(reply.get());
  return {pixels, area.width(), area.height(), line, root.format, release, reply.release()};
}

/// The server leaves padding as it is; Qt wants it set where it counts as alpha.
void setPadding(QImage& image) {
  constexpr std::uint32_t kPadding = 0xC0000000;
  for (int y = 0; y < image.height(); ++y) {
    auto* const line = reinterpret_cast<std::uint32_t*>(image.scanLine(y));
    std::for_each_n(line, image.width(), [](std::uint32_t& pixel) { pixel |= kPadding; });
  }
}

QImage withEightBits(QImage image) {
  if (image.format() == QImage::Format_RGB30 || image.format() == QImage::Format_BGR30) setPadding(image);
  return std::move(image).convertToFormat(QImage::Format_RGB32);
}

}  // namespace

std::expected<QImage, QString> x11ScreenImage(const QRect& pixels) {
  int screenNumber = 0;
  const Connection connection(xcb_connect(nullptr, &screenNumber));
  if (xcb_connection_has_error(connection.get()) != 0) return std::unexpected(u"the X server takes no connection"_s);
  const Root root = describeRoot(connection.get(), screenNumber);
  if (root.format == QImage::Format_Invalid) return std::unexpected(u"the screen has pixels of an unknown layout"_s);
  const QRect area = pixels.intersected(root.pixels);
  if (area.isEmpty()) return std::unexpected(u"the rectangle is beside the screen"_s);
  QImage image = canShareMemory(connection.get()) ? sharedImage(connection.get(), root, area) : QImage();
  if (image.isNull()) image = sentImage(connection.get(), root, area);
  if (image.isNull()) return std::unexpected(u"the X server refuses its pixels"_s);
  return withEightBits(std::move(image));
}
