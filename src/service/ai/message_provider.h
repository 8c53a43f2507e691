#pragma once

#include "service/ai/http_provider.h"

/// The Anthropic Messages API, or a service that speaks it.
class MessageProvider final : public HttpProvider {
 public:
  /// `base`: without the version.
  MessageProvider(const QUrl& base, const QByteArray& key, QString model)
      : HttpProvider(base, key), key_(key), model_(std::move(model)) {}

 private:
  HttpCall request(const Question& question, bool isStream) const override;
  Fragment readWhole(const QJsonObject& answer) const override;
  Fragment readEvent(const QJsonObject& event) const override;

  QByteArray key_;
  QString model_;
};
