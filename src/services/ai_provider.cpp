#include "services/ai_provider.h"

#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr std::array kKinds = {
    std::pair{ProviderKind::none, "none"_L1},
    std::pair{ProviderKind::openAICompatible, "openai-compatible"_L1},
    std::pair{ProviderKind::anthropic, "anthropic"_L1},
    std::pair{ProviderKind::command, "command"_L1},
};

}  // namespace

QString rawValue(ProviderKind kind) {
  for (const auto& [value, text] : kKinds)
    if (value == kind) return text;
  return {};
}

std::optional<ProviderKind> providerKind(const QString& rawValue) {
  for (const auto& [value, text] : kKinds)
    if (text == rawValue) return value;
  return std::nullopt;
}

bool decode(const QJsonValue& value, ProviderKind& out) {
  const auto kind = providerKind(value.toString());
  if (kind) out = *kind;
  return kind.has_value();
}

void AIProvider::read(JsonReader& reader) {
  reader.read("kind"_L1, kind);
  reader.read("baseUrl"_L1, baseUrl);
  reader.read("model"_L1, model);
  reader.read("imageModel"_L1, imageModel);
  reader.read("command"_L1, command);
}

void AIProvider::write(QJsonObject& object) const {
  object.insert("kind"_L1, rawValue(kind));
  object.insert("baseUrl"_L1, baseUrl);
  object.insert("model"_L1, model);
  object.insert("imageModel"_L1, imageModel);
  object.insert("command"_L1, command);
}
