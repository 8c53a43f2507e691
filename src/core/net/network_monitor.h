#pragma once

#include <QObject>

#include "platform/network_path.h"

/// Publishes whether the machine is online. Starts as online, so that nothing is greyed out before the first report.
class NetworkMonitor : public QObject {
  Q_OBJECT

 public:
  explicit NetworkMonitor(NetworkPath& path);

  bool isOnline() const { return online_; }

 Q_SIGNALS:
  /// Emitted on the main thread, only for a value that differs.
  void changed(bool online);

 private:
  void setOnline(bool online);

  bool online_ = true;
};
