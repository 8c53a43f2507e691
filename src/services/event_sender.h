#pragma once

#include <QJsonObject>

#include "services/metered_api.h"

/// Brings usage events to the API service, once, without waiting for the answer. Main thread only.
class EventSender {
 public:
  EventSender(MeteredAPI& api, HttpClient& http) : api_(api), http_(http) {}

  void send(const QJsonObject& event);

 private:
  void authorize(const ServiceLocation& location, const QJsonObject& event);
  void post(const QUrl& url, const QByteArray& authorization, const QJsonObject& event);

  MeteredAPI& api_;
  HttpClient& http_;
  Job job_ = Job::start();
};
