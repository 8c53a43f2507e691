#include "services/event_sender.h"

#include <QJsonDocument>

using namespace std::chrono_literals;

namespace {

constexpr auto kTimeLimit = 15s;

}  // namespace

void EventSender::send(const QJsonObject& event) {
  api_.locate(job_, [this, event](const auto& location) {
    if (location) authorize(*location, event);
  });
}

void EventSender::authorize(const ServiceLocation& location, const QJsonObject& event) {
  const auto url = location.url(ServiceOperation::event);
  if (!url) return;
  api_.authorization(location, job_, [this, event, url = *url](const auto& authorization) {
    post(url, authorization.value_or(QByteArray()), event);
  });
}

void EventSender::post(const QUrl& url, const QByteArray& authorization, const QJsonObject& event) {
  HttpRequest request{.method = "POST",
                      .url = url,
                      .headers = {{"Content-Type", "application/json"}},
                      .body = QJsonDocument(event).toJson(QJsonDocument::Compact),
                      .timeout = kTimeLimit};
  if (!authorization.isEmpty()) request.headers.emplace_back("Authorization", authorization);
  http_.sendAndForget(request);
}
