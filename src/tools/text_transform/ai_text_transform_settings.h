#pragma once

#include <optional>
#include <span>

#include "core/settings/store.h"

/// Where the result of a transform goes.
enum class TransformOutput {
  /// Over the selection, by typing.
  replace,
  clipboard,
};

struct TransformOutputNames {
  TransformOutput output;
  QLatin1StringView rawValue;
  QLatin1StringView label;
};

std::span<const TransformOutputNames> transformOutputs();
QString rawValue(TransformOutput output);
/// None for a text that names no output.
std::optional<TransformOutput> transformOutput(const QString& rawValue);
bool decode(const QJsonValue& value, TransformOutput& out);

/// What AI Text Transform does with its results, "AITextTransform/settings.json".
struct AITextTransformSettings {
  static constexpr const char* kStoreName = "AITextTransformSettings";

  TransformOutput output = TransformOutput::clipboard;

  bool operator==(const AITextTransformSettings&) const = default;
  void read(JsonReader& reader);
  void write(QJsonObject& object) const;
};

using AITextTransformStore = Store<AITextTransformSettings>;
