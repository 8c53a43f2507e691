#pragma once

#include <QJsonObject>
#include <QString>

#include <expected>

/// Which provider answers, as the operator or the application says it.
struct ProviderSettings {
  enum class Kind { none, chat, messages, command };

  Kind kind = Kind::none;
  /// Empty: the provider's own, where it has one.
  QString baseUrl = {};
  QString model = {};
  /// Empty: no pictures are made.
  QString imageModel = {};
  /// A program and its arguments, quoted as in a shell.
  QString command = {};
  QByteArray key = {};
  /// Why the provider cannot be used just now, in words for its user; empty: it can.
  QString problem = {};

  /// "openai" or "openai-compatible", "anthropic", "command", "none". Error: it is none of them.
  static std::expected<Kind, QString> kindNamed(const QString& name);
  /// Of the application, one object. What it does not name is empty.
  static std::expected<ProviderSettings, QString> fromJson(const QJsonObject& object);
  /// Error: what is missing or wrong.
  std::expected<void, QString> check() const;
};
