#pragma once

#include <QString>

#include <optional>

class QSettings;

/// Notices that another version ran before this one, and announces that one time. Kept in the user defaults as
/// "updates.lastVersion". Main thread only.
class UpdateNotice {
 public:
  UpdateNotice(QSettings& defaults, QString running) : defaults_(defaults), running_(std::move(running)) {}

  /// The version that runs.
  const QString& running() const { return running_; }

  /// Whether there is something to announce now. The very first run has nothing; while `isBusy`, with a first-run
  /// window say, the announcement waits for the next start.
  bool prepare(bool isBusy);
  /// The earlier version that `prepare` found, once; none when nothing is being announced.
  std::optional<QString> takeEarlier();

 private:
  QSettings& defaults_;
  QString running_;
  std::optional<QString> earlier_;
};
