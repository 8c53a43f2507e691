#pragma once

#include "service/ai/http_provider.h"

/// Any service that speaks the widespread chat-completions protocol, hosted or on this computer.
class ChatProvider final : public HttpProvider {
 public:
  struct Setup {
    /// Up to and with the version, such as "https://api.example.com/v1".
    QUrl base;
    QByteArray key;
    QString model;
    /// Makes the pictures; empty: none does.
    QString imageModel;
    /// How an image model is set, for whoever has none.
    QString hint;
  };

  explicit ChatProvider(const Setup& setup) : HttpProvider(setup.base, setup.key), setup_(setup) {}

  Answered<std::vector<Picture>> draw(const Drawing& drawing, const AICall& call) override;

 private:
  HttpCall request(const Question& question, bool isStream) const override;
  Fragment readWhole(const QJsonObject& answer) const override;
  Fragment readEvent(const QJsonObject& event) const override;
  HttpCall drawingRequest(const Drawing& drawing) const;
  HttpCall editRequest(const Drawing& drawing) const;
  Answered<Picture> pictureIn(const QJsonObject& entry, const AICall& call);
  Answered<QByteArray> fetch(const QString& url, const AICall& call);
  QList<QByteArray> headers(const QByteArray& contentType) const;

  Setup setup_;
};
