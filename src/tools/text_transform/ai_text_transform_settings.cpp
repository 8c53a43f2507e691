#include "tools/text_transform/ai_text_transform_settings.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

using Names = TransformOutputNames;

constexpr std::array kOutputs = {
    Names{TransformOutput::replace, "replace"_L1, "Replace the selection"_L1},
    Names{TransformOutput::clipboard, "clipboard"_L1, "Copy result to clipboard"_L1},
};

}  // namespace

std::span<const TransformOutputNames> transformOutputs() { return kOutputs; }

QString rawValue(TransformOutput output) { return std::ranges::find(kOutputs, output, &Names::output)->rawValue; }

std::optional<TransformOutput> transformOutput(const QString& rawValue) {
  const auto row = std::ranges::find(kOutputs, rawValue, &Names::rawValue);
  return row == kOutputs.end() ? std::nullopt : std::optional(row->output);
}

bool decode(const QJsonValue& value, TransformOutput& out) {
  const auto output = transformOutput(value.toString());
  if (output) out = *output;
  return output.has_value();
}

void AITextTransformSettings::read(JsonReader& reader) { reader.read("output"_L1, output); }

void AITextTransformSettings::write(QJsonObject& object) const { object.insert("output"_L1, rawValue(output)); }
