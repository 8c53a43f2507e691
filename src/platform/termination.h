#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <memory>

/// Turns the signals that ask a process to end (SIGTERM, SIGINT, SIGHUP) into a Qt signal, so that termination can
/// save. One at a time; main thread only.
class TerminationSignals : public QObject {
  Q_OBJECT

 public:
  TerminationSignals();
  ~TerminationSignals() override;

 Q_SIGNALS:
  void requested();

 private:
  std::unique_ptr<QSocketNotifier> notifier_;
};
