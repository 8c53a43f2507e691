#include "tools/generate_image/generate_image_settings.h"

#include <algorithm>

using namespace Qt::StringLiterals;

void GenerateImageSettings::read(JsonReader& reader) {
  reader.read("size"_L1, options.size);
  reader.read("quality"_L1, options.quality);
  reader.read("historyMegabytes"_L1, historyMegabytes);
  historyMegabytes = std::clamp(historyMegabytes, 1, kMostHistoryMegabytes);
}

void GenerateImageSettings::write(QJsonObject& object) const {
  object.insert("size"_L1, rawValue(options.size));
  object.insert("quality"_L1, rawValue(options.quality));
  object.insert("historyMegabytes"_L1, historyMegabytes);
}
