#pragma once

#include <QJsonValue>
#include <QString>

#include <span>

/// The shape of a picture in pixels.
enum class ImageSize {
  /// The service decides.
  automatic,
  square,
  landscape,
  portrait,
};

/// How much work a picture is worth; more costs more.
enum class ImageQuality { automatic, low, medium, high };

/// One choice of an option: as the service and the files name it, and as the user reads it.
template <class Value>
struct ImageChoice {
  Value value;
  QLatin1StringView rawValue;
  QLatin1StringView label;
};

std::span<const ImageChoice<ImageSize>> imageSizes();
std::span<const ImageChoice<ImageQuality>> imageQualities();

QString rawValue(ImageSize size);
QString rawValue(ImageQuality quality);
/// False for a text that names none; `out` stays as it is then.
bool decode(const QJsonValue& value, ImageSize& out);
bool decode(const QJsonValue& value, ImageQuality& out);

struct ImageOptions {
  ImageSize size = ImageSize::automatic;
  ImageQuality quality = ImageQuality::automatic;

  bool operator==(const ImageOptions&) const = default;
};
