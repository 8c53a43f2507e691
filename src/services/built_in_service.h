#pragma once

#include <QJsonObject>
#include <QObject>

#include <functional>

#include "base/job.h"
#include "services/service_location.h"

/// The service that comes with Vantle and runs on this computer while it is needed. As it stands, of a Vantle that
/// comes without one. Main thread only.
class BuiltInService : public QObject {
  Q_OBJECT

 public:
  using Answer = std::function<void(std::expected<ServiceLocation, ServiceError>)>;

  /// Where it is, started first when it does not run. Answers later, never after the end of `job`.
  virtual void locate(const JobRef& job, Answer answer);
  virtual bool isRunning() const { return false; }

  /// Gives what the service is to be told before it is first used: one JSON object, at once or later, never after the
  /// end of the job.
  using Brief = std::function<void(const JobRef&, std::function<void(const QJsonObject&)>)>;
  virtual void setBrief(const Brief& /*brief*/) {}
  /// What it is to be told has changed. A running one is told at once, and goes on.
  virtual void briefAnew() {}

 Q_SIGNALS:
  /// It runs, or no longer does.
  void runningChanged();
};
