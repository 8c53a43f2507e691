#pragma once

#include "core/settings/store.h"
#include "tools/generate_image/image_options.h"

/// What Generate Image was last asked for and how much it keeps, "GenerateImage/settings.json".
struct GenerateImageSettings {
  static constexpr const char* kStoreName = "GenerateImageSettings";
  static constexpr int kDefaultHistoryMegabytes = 500;
  static constexpr int kMostHistoryMegabytes = 100'000;

  ImageOptions options;
  /// The room that kept images may take, in megabytes (10⁶ bytes); at least 1.
  int historyMegabytes = kDefaultHistoryMegabytes;

  qint64 historyLimit() const { return qint64{historyMegabytes} * 1'000'000; }

  bool operator==(const GenerateImageSettings&) const = default;
  void read(JsonReader& reader);
  void write(QJsonObject& object) const;
};

using GenerateImageStore = Store<GenerateImageSettings>;
