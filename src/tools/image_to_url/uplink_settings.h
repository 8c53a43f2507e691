#pragma once

#include <optional>

#include "core/settings/store.h"

/// Where the image comes from.
enum class ImageSource {
  /// The image now on the clipboard.
  clipboard,
  /// A region that the user drags on the screen.
  liveSelection,
};

QString rawValue(ImageSource source);
/// None for a text that names no source.
std::optional<ImageSource> imageSource(const QString& rawValue);
bool decode(const QJsonValue& value, ImageSource& out);

/// What Image to URL uploads, "Uplink/settings.json".
struct UplinkSettings {
  static constexpr const char* kStoreName = "UplinkSettings";

  ImageSource source = ImageSource::clipboard;

  bool operator==(const UplinkSettings&) const = default;
  void read(JsonReader& reader);
  void write(QJsonObject& object) const;
};

using UplinkStore = Store<UplinkSettings>;
