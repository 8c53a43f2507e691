#pragma once

#include <QJsonObject>

#include "service/ai/http_call.h"

/// A provider behind HTTP. What the kinds have in common: one request, an answer at once or as a stream of events, and
/// what can be wrong with it.
class HttpProvider : public Provider {
 public:
  /// `secret`: removed from whatever the provider says, should it repeat it.
  HttpProvider(QUrl base, QByteArray secret) : base_(std::move(base)), secret_(std::move(secret)) {}

  Answered<QString> ask(const Question& question, const AICall& call) final;

 protected:
  /// What the answer, or one event of it, says.
  struct Fragment {
    QString text;
    /// Nothing follows.
    bool isEnd = false;
    /// The provider's limit was reached.
    bool isCut = false;
    /// In the provider's words; empty: none.
    QString error;
  };

  virtual HttpCall request(const Question& question, bool isStream) const = 0;
  virtual Fragment readWhole(const QJsonObject& answer) const = 0;
  virtual Fragment readEvent(const QJsonObject& event) const = 0;

  /// The answer's object; error: what the provider, or this in its place, says is wrong.
  Answered<QJsonObject> askForObject(const HttpCall& call, const AICall& context);
  Answered<QJsonObject> objectIn(const HttpAnswer& answer) const;
  HttpCaller& caller() { return caller_; }
  /// Below the base URL.
  QUrl url(const QString& path) const;
  static AIError noAnswer();

 private:
  class Reading;

  AIError refusal(int status, const QByteArray& body) const;
  AIError refusal(const QString& words, int status) const;

  QUrl base_;
  QByteArray secret_;
  HttpCaller caller_;
};
