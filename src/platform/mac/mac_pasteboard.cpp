#include "platform/mac/mac_pasteboard.h"

#include <algorithm>
#include <array>

#include "base/logging.h"
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

constexpr const char* kText = "public.utf8-plain-text";

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

std::optional<QString> heldText() {
  QByteArray bytes;
  mac::readPasteboard(kText, takeBytes, &bytes);
  if (bytes.isEmpty()) return std::nullopt;
  return QString::fromUtf8(bytes);
}

struct Keeping {
  PasteboardContents contents;
  unsigned long room = static_cast<unsigned long>(Pasteboard::kLargestData);
};

void takePiece(void* context, const mac::PasteboardPiece* piece) {
  auto& kept = *static_cast<Keeping*>(context);
  if (piece->length > kept.room) return;
  kept.room -= piece->length;
  kept.contents.flavours.push_back(
      {QString::fromUtf8(piece->type),
       QByteArray(static_cast<const char*>(piece->bytes), static_cast<qsizetype>(piece->length)),
       static_cast<int>(piece->item)});
}

}  // namespace

void MacPasteboard::writeText(const QString& text) { restore({{{QString::fromLatin1(kText), text.toUtf8()}}}); }

void MacPasteboard::writeImage(const QByteArray& png) { restore({{{QStringLiteral("public.png"), png}}}); }

std::int64_t MacPasteboard::changeCount() const { return mac::pasteboardChangeCount(); }

void MacPasteboard::readText(const JobRef& job, ReadText answer) {
  job.later([answer = std::move(answer)] { answer(heldText()); });
}

void MacPasteboard::keep(const JobRef& job, Kept answer) {
  job.later([answer = std::move(answer)] {
    Keeping kept;
    mac::readPasteboardPieces(takePiece, &kept);
    answer(std::move(kept.contents));
  });
}

void MacPasteboard::restore(const PasteboardContents& contents) {
  std::vector<QByteArray> names;
  for (const PasteboardFlavour& flavour : contents.flavours) names.push_back(flavour.name.toUtf8());
  std::vector<mac::PasteboardPiece> pieces;
  for (std::size_t index = 0; index < names.size(); ++index) {
    const PasteboardFlavour& flavour = contents.flavours[index];
    pieces.push_back({static_cast<std::uint32_t>(flavour.item), names[index].constData(), flavour.bytes.constData(),
                      static_cast<unsigned long>(flavour.bytes.size())});
  }
  if (!mac::writePasteboardPieces(pieces.data(), static_cast<std::uint32_t>(pieces.size())))
    qCWarning(lcPlatform) << "the system refuses what is put on the pasteboard";
}

void MacPasteboard::read(const std::vector<PasteboardFormat>& formats, const JobRef& job, Read answer) {
  job.later([answer = std::move(answer), formats] { answer(firstOf(formats)); });
}
