#include <QSignalSpy>
#include <QTest>

#include <thread>

#include "core/net/network_monitor.h"
#include "support/fake_platform.h"

class TestNetworkMonitor : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void startsOnlineAndPublishesDifferencesOnly() {
    FakeNetworkPath path;
    const NetworkMonitor monitor(path);
    QSignalSpy changes(&monitor, &NetworkMonitor::changed);
    QVERIFY(monitor.isOnline());
    std::jthread([&] {
      for (const bool satisfied : {true, false, false, false, true, true}) path.report(satisfied);
    }).join();
    QVERIFY(monitor.isOnline());
    QTRY_COMPARE(changes.size(), 2);
    QCOMPARE(changes[0][0].toBool(), false);
    QCOMPARE(changes[1][0].toBool(), true);
  }

  void reportsAfterItsEndAreIgnored() {
    FakeNetworkPath path;
    {
      const NetworkMonitor monitor(path);
    }
    path.report(false);
    QCoreApplication::processEvents();
  }
};

QTEST_GUILESS_MAIN(TestNetworkMonitor)
#include "test_network_monitor.moc"
