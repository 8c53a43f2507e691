#include "tools/generate_image/image_options.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr std::array kSizes = {
    ImageChoice{ImageSize::automatic, "auto"_L1, "Any shape"_L1},
    ImageChoice{ImageSize::square, "1024x1024"_L1, "Square"_L1},
    ImageChoice{ImageSize::landscape, "1536x1024"_L1, "Landscape"_L1},
    ImageChoice{ImageSize::portrait, "1024x1536"_L1, "Portrait"_L1},
};

constexpr std::array kQualities = {
    ImageChoice{ImageQuality::automatic, "auto"_L1, "Any quality"_L1},
    ImageChoice{ImageQuality::low, "low"_L1, "Low"_L1},
    ImageChoice{ImageQuality::medium, "medium"_L1, "Medium"_L1},
    ImageChoice{ImageQuality::high, "high"_L1, "High"_L1},
};

template <class Value, std::size_t Count>
QString rawValueIn(const std::array<ImageChoice<Value>, Count>& choices, Value value) {
  return std::ranges::find(choices, value, &ImageChoice<Value>::value)->rawValue;
}

template <class Value, std::size_t Count>
bool decodeIn(const std::array<ImageChoice<Value>, Count>& choices, const QString& text, Value& out) {
  const auto row = std::ranges::find(choices, text, &ImageChoice<Value>::rawValue);
  if (row != choices.end()) out = row->value;
  return row != choices.end();
}

}  // namespace

std::span<const ImageChoice<ImageSize>> imageSizes() { return kSizes; }
std::span<const ImageChoice<ImageQuality>> imageQualities() { return kQualities; }
QString rawValue(ImageSize size) { return rawValueIn(kSizes, size); }
QString rawValue(ImageQuality quality) { return rawValueIn(kQualities, quality); }
bool decode(const QJsonValue& value, ImageSize& out) { return decodeIn(kSizes, value.toString(), out); }
bool decode(const QJsonValue& value, ImageQuality& out) { return decodeIn(kQualities, value.toString(), out); }
