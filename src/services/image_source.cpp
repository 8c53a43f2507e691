#include "services/image_source.h"

#include <algorithm>
#include <array>

namespace {

struct SourceText {
  ImageSource source;
  QLatin1StringView rawValue;
};

constexpr std::array kSources = {
    SourceText{ImageSource::clipboard, QLatin1StringView("clipboard")},
    SourceText{ImageSource::liveSelection, QLatin1StringView("liveSelection")},
};

}  // namespace

QString rawValue(ImageSource source) { return std::ranges::find(kSources, source, &SourceText::source)->rawValue; }

std::optional<ImageSource> imageSource(const QString& rawValue) {
  const auto row = std::ranges::find(kSources, rawValue, &SourceText::rawValue);
  return row == kSources.end() ? std::nullopt : std::optional(row->source);
}

bool decode(const QJsonValue& value, ImageSource& out) {
  const auto source = imageSource(value.toString());
  if (source) out = *source;
  return source.has_value();
}
