#include "platform/mac/mac_pasteboard.h"

#include <algorithm>
#include <array>

#include "platform/mac/mac_api.h"

namespace {

struct UniformType {
  PasteboardFormat format;
  const char* name;
};

constexpr std::array kTypes = {
    UniformType{PasteboardFormat::png, "public.png"},
    UniformType{PasteboardFormat::jpeg, "public.jpeg"},
    UniformType{PasteboardFormat::tiff, "public.tiff"},
    UniformType{PasteboardFormat::webp, "org.webmproject.webp"},
    UniformType{PasteboardFormat::gif, "com.compuserve.gif"},
    UniformType{PasteboardFormat::bmp, "com.microsoft.bmp"},
};

void takeBytes(void* context, const void* bytes, unsigned long length) {
  if (length > static_cast<unsigned long>(Pasteboard::kLargestData)) return;
  *static_cast<QByteArray*>(context) = QByteArray(static_cast<const char*>(bytes), static_cast<qsizetype>(length));
}

void takeURL(void* context, const char* url) { static_cast<QByteArray*>(context)->append(url).append("\r\n"); }

QByteArray held(PasteboardFormat format) {
  QByteArray bytes;
  const auto type = std::ranges::find(kTypes, format, &UniformType::format);
  if (type != kTypes.end())
    mac::readPasteboard(type->name, takeBytes, &bytes);
  else
    mac::readPasteboardFiles(takeURL, &bytes);
  return bytes;
}

std::optional<PasteboardData> firstOf(const std::vector<PasteboardFormat>& formats) {
  for (const PasteboardFormat format : formats)
    if (QByteArray bytes = held(format); !bytes.isEmpty()) return PasteboardData{format, std::move(bytes)};
  return std::nullopt;
}

}  // namespace

void MacPasteboard::read(const std::vector<PasteboardFormat>& formats, const JobRef& job, Read answer) {
  job.later([answer = std::move(answer), formats] { answer(firstOf(formats)); });
}
