#pragma once

#include <optional>

#include "core/settings/store.h"

enum class ProviderKind { none, openAICompatible, anthropic, command };

QString rawValue(ProviderKind kind);
/// None for a text that names no kind.
std::optional<ProviderKind> providerKind(const QString& rawValue);
bool decode(const QJsonValue& value, ProviderKind& out);

/// Who answers the AI tools of the built-in service, "ai-provider.json". Its key is in the keychain only.
struct AIProvider {
  static constexpr const char* kStoreName = "AIProvider";

  ProviderKind kind = ProviderKind::none;
  /// As it was typed; empty: the provider's own, where it has one.
  QString baseUrl;
  QString model;
  /// A program and its arguments, quoted as in a shell.
  QString command;
  /// Makes pictures; empty: none does.
  QString imageModel;

  bool operator==(const AIProvider&) const = default;
  void read(JsonReader& reader);
  void write(QJsonObject& object) const;
};

using AIProviderStore = Store<AIProvider>;
