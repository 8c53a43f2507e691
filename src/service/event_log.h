#pragma once

#include <QJsonObject>
#include <QString>

#include <mutex>

#include "service/endpoint.h"

/// Appends usage events to a file of JSON Lines, one write a line, so that a kill leaves whole lines. Any thread.
class EventLog {
 public:
  explicit EventLog(const QString& path) : path_(path) {}

  /// False when it cannot be written.
  bool append(const QJsonObject& event);

 private:
  QString path_;
  std::mutex mutex_;
};

/// POST /v1/events: takes an event with the keys there are and no others.
class EventsEndpoint final : public Endpoint {
 public:
  explicit EventsEndpoint(EventLog& log) : log_(log) {}

  qsizetype maximumBody() const override { return 4096; }
  Response answer(const Request& request) override;

 private:
  EventLog& log_;
};
