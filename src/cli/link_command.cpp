#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <array>

#include "base/regular_file.h"
#include "base/visible_text.h"
#include "capture/image_decoding.h"
#include "capture/png_encoding.h"
#include "cli/command_services.h"
#include "cli/options.h"
#include "tools/image_to_url/uplink_uploader.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kShown = 300;
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

std::expected<ClipboardImage, QString> readImage(const QString& word, const CommandContext& context) {
  const QString baseName = word == "-"_L1 ? u"image"_s : QFileInfo(word).completeBaseName();
  const auto bytes = readSource(word, context);
  return bytes ? asImage(*bytes, baseName) : std::unexpected(bytes.error());
}

void print(const QUrl& link, bool json, QTextStream& out) {
  const QString text = link.toString(QUrl::FullyEncoded);
  if (json)
    out << QJsonDocument(QJsonObject{{u"url"_s, text}}).toJson(QJsonDocument::Compact) << '\n';
  else
    out << text << '\n';
}

}  // namespace

int runLink(const QStringList& arguments, CommandContext& context) {
  const Command& command = commandNamed("link"_L1);
  const auto options = Options::parse(arguments, {{"json"_L1, {}}});
  if (!options) return usageError(command, options.error(), context);
  const QString word = options->words().value(0);
  if (options->words().size() != 1 || word.isEmpty())
    return usageError(command, u"name one image, or - for standard input"_s, context);
  const auto image = readImage(word, context);
  if (!image) {
    context.err << "vantle: " << visibleLine(word, kShown) << ": " << image.error() << '\n';
    return exit_code::kFailure;
  }
  CommandServices with(context, CommandLineService::Purpose::link);
  UplinkUploader uploader(with.services.environments, with.http);
  const auto link = awaited<std::expected<QUrl, UplinkError>>(
      [&](const JobRef& job, auto done) { uploader.upload(*image, job, done); });
  if (!link) {
    context.err << "vantle: " << visibleLine(link.error().description(), kShown) << '\n';
    return exit_code::kFailure;
  }
  print(*link, options->has("json"_L1), context.out);
  return exit_code::kSuccess;
}
