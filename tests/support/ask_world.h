#pragma once

#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include "support/service_world.h"
#include "tools/asking/answer_client.h"

/// The services of the tools that answer questions, and what became of one question.
struct AskWorld : ServiceWorld {
  AnswerClient::Services answers() { return {services.environments, services.api, services.http, services.quota}; }
  AskCall call() {
    return {job, [this](const QString& soFar) { grown.append(soFar); },
            [this](const AskOutcome& result) { outcome = result; }};
  }
  /// The answer, or else the error's text.
  QString said() const {
    if (!outcome) return QStringLiteral("nothing yet");
    return *outcome ? **outcome : outcome->error().description();
  }
  bool isWaiting() {
    return QTest::qWaitFor([this] { return !http.waiting.empty(); });
  }
  const HttpRequest& request() const { return http.sent.back(); }
  QByteArray header(QByteArrayView name) const {
    return HttpResponse{0, request().headers, {}}.header(name).value_or(QByteArray());
  }
  static QByteArray event(const QByteArray& name, const QJsonObject& data) {
    return "event: " + name + "\ndata: " + QJsonDocument(data).toJson(QJsonDocument::Compact) + "\n\n";
  }
  static QByteArray delta(const QString& text) { return event("delta", {{QStringLiteral("text"), text}}); }
  static QByteArray done(const QString& text) { return event("done", {{QStringLiteral("answer"), text}}); }
  /// Streams to the oldest request, and ends its answer.
  void stream(const QByteArray& body, int status = 200) {
    http.deliver(body);
    http.answer(HttpResponse{status, {{"Content-Type", "text/event-stream; charset=utf-8"}}, body});
  }

  Job job = Job::start();
  QStringList grown;
  std::optional<AskOutcome> outcome;
};
