#include "services/clipboard_images.h"

#include <QFileInfo>
#include <QMimeDatabase>
#include <QSysInfo>
#include <QUrl>

#include <algorithm>
#include <array>
#include <utility>

#include "base/background.h"
#include "base/regular_file.h"
#include "capture/image_decoding.h"
#include "capture/png_encoding.h"

using namespace Qt::StringLiterals;

namespace {

/// The better one first. What few programs have beside the others comes after the files.
constexpr std::array kFormats = {PasteboardFormat::png,      PasteboardFormat::jpeg, PasteboardFormat::tiff,
                                 PasteboardFormat::fileURLs, PasteboardFormat::webp, PasteboardFormat::gif,
                                 PasteboardFormat::bmp};
/// Of a list of copied files.
constexpr qsizetype kMostFiles = 10'000;

ClipboardImage asClipboardImage(const QByteArray& png) { return {png, u"clipboard.png"_s, u"image/png"_s}; }

/// The path of a file on this computer; empty for any other address.
QString localPath(const QByteArray& line) {
  QUrl url = QUrl::fromEncoded(line.trimmed(), QUrl::StrictMode);
  if (url.host() == "localhost"_L1 || url.host() == QSysInfo::machineHostName().toLower()) url.setHost({});
  return url.isLocalFile() && url.host().isEmpty() ? url.toLocalFile() : QString();
}

QString firstImagePath(const QByteArray& urls) {
  const QMimeDatabase types;
  const auto lines = urls.split('\n');
  for (const QByteArray& line : lines.first(std::min(lines.size(), kMostFiles))) {
    const QString path = line.startsWith('#') ? QString() : localPath(line);
    const QString type = types.mimeTypeForFile(path, QMimeDatabase::MatchExtension).name();
    if (!path.isEmpty() && type.startsWith("image/"_L1)) return path;
  }
  return {};
}

/// Empty for anything but a regular file of a size that can be sent.
QByteArray fileContents(const QString& path) {
  const auto file = openRegularFile(QFileInfo(path).canonicalFilePath());
  if (!file || (*file)->size() > Pasteboard::kLargestData) return {};
  return (*file)->read(Pasteboard::kLargestData);
}

/// Empty when there is no picture in it.
QByteArray encodedAnew(const PasteboardData& data) {
  const bool isFiles = data.format == PasteboardFormat::fileURLs;
  const QImage image = decodedImage(isFiles ? fileContents(firstImagePath(data.bytes)) : data.bytes);
  return image.isNull() ? QByteArray() : pngWithTransparency(image);
}

}  // namespace

void ClipboardImages::read(const JobRef& job, Read answer) {
  readFirst({kFormats.begin(), kFormats.end()}, job, std::move(answer));
}

void ClipboardImages::readFirst(std::vector<PasteboardFormat> formats, const JobRef& job, Read answer) {
  pasteboard_.read(formats, job, [this, formats, job, answer = std::move(answer)](auto data) mutable {
    if (!data) return answer(std::nullopt);
    const auto taken = std::ranges::find(formats, data->format);
    formats.erase(formats.begin(), taken == formats.end() ? taken : taken + 1);
    take(std::move(*data), std::move(formats), job, answer);
  });
}

/// What cannot be decoded counts as not there; `next` are the formats after it.
void ClipboardImages::take(PasteboardData data, std::vector<PasteboardFormat> next, const JobRef& job,
                           const Read& answer) {
  if (isPNG(data.bytes) && data.format == PasteboardFormat::png) return answer(asClipboardImage(data.bytes));
  runInBackground(
      job, [data = std::move(data)](const std::stop_token&) { return encodedAnew(data); },
      [this, next = std::move(next), job, answer](const QByteArray& png) mutable {
        if (!png.isEmpty()) return answer(asClipboardImage(png));
        readFirst(std::move(next), job, answer);
      });
}
