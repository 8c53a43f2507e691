#include "core/net/network_monitor.h"

#include <QCoreApplication>
#include <QPointer>

NetworkMonitor::NetworkMonitor(NetworkPath& path) {
  // Reports come from another thread. Whether this object still lives is asked on the main thread, where it dies.
  path.start([monitor = QPointer(this)](bool satisfied) {
    const auto publish = [monitor, satisfied] {
      if (monitor) monitor->setOnline(satisfied);
    };
    QMetaObject::invokeMethod(QCoreApplication::instance(), publish, Qt::QueuedConnection);
  });
}

void NetworkMonitor::setOnline(bool online) {
  if (std::exchange(online_, online) != online) Q_EMIT changed(online);
}
