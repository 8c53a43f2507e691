#pragma once

#include "core/settings/store.h"
#include "services/image_source.h"

/// What Image to URL uploads, "Uplink/settings.json".
struct UplinkSettings {
  static constexpr const char* kStoreName = "UplinkSettings";

  ImageSource source = ImageSource::clipboard;

  bool operator==(const UplinkSettings&) const = default;
  void read(JsonReader& reader);
  void write(QJsonObject& object) const;
};

using UplinkStore = Store<UplinkSettings>;
