#include "tools/generate_image/generated_image.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <array>

#include "capture/image_decoding.h"
#include "capture/png_encoding.h"

using namespace Qt::StringLiterals;

namespace {

QByteArray fromBase64(QString text) {
  // As browsers write images into pages.
  if (text.startsWith("data:image/"_L1)) text = text.mid(text.indexOf(u',') + 1);
  const auto bytes = QByteArray::fromBase64Encoding(text.simplified().remove(u' ').toLatin1(),
                                                    QByteArray::AbortOnBase64DecodingErrors);
  return bytes ? *bytes : QByteArray();
}

/// A text, or an object that has one under one of the usual names.
QByteArray imageInValue(const QJsonValue& value) {
  if (value.isString()) return fromBase64(value.toString());
  const QJsonObject object = value.toObject();
  for (const auto member : {"data"_L1, "b64_json"_L1, "image"_L1})
    if (const QByteArray bytes = fromBase64(object.value(member).toString()); !bytes.isEmpty()) return bytes;
  return {};
}

QByteArray imageInList(const QJsonValue& list) {
  for (const QJsonValue& value : list.toArray())
    if (const QByteArray bytes = imageInValue(value); !bytes.isEmpty()) return bytes;
  return {};
}

QByteArray imageInObject(const QJsonObject& object) {
  const auto finders = std::array<QByteArray (*)(const QJsonObject&), 4>{
      [](const QJsonObject& from) { return imageInList(from.value("images"_L1)); },
      [](const QJsonObject& from) { return imageInValue(from.value("image"_L1)); },
      [](const QJsonObject& from) { return imageInList(from.value("data"_L1)); },
      [](const QJsonObject& from) { return imageInValue(from.value("data"_L1)); },
  };
  for (const auto find : finders)
    if (const QByteArray bytes = find(object); !bytes.isEmpty()) return bytes;
  return {};
}

QByteArray encodedImageIn(const HttpResponse& response) {
  // What the service calls it may be wrong.
  if (!pixelFormat(response.body).isEmpty()) return response.body;
  return imageInObject(QJsonDocument::fromJson(response.body).object());
}

QImage forTheEye(const QImage& picture) {
  constexpr QSize kMost(GeneratedImage::kShownEdge, GeneratedImage::kShownEdge);
  if (picture.width() <= kMost.width() && picture.height() <= kMost.height()) return picture;
  return picture.scaled(kMost, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

}  // namespace

std::optional<GeneratedImage> asGeneratedImage(const QByteArray& bytes) {
  const QImage picture = decodedImage(bytes);
  if (picture.isNull()) return std::nullopt;
  GeneratedImage image{isPNG(bytes) ? bytes : pngWithTransparency(picture), forTheEye(picture), picture.size()};
  return image.png.isEmpty() ? std::nullopt : std::optional(image);
}

std::expected<GeneratedImage, GenerateImageError> imageIn(const HttpResponse& response) {
  const QByteArray bytes = encodedImageIn(response);
  if (bytes.isEmpty()) return std::unexpected(GenerateImageError::noImage(response.body.left(1000)));
  if (auto image = asGeneratedImage(bytes)) return *std::move(image);
  return std::unexpected(GenerateImageError::damagedImage());
}
