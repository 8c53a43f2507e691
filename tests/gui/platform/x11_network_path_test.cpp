#include "platform/x11/x11_network_path.h"

#include <QFile>
#include <QProcess>
#include <QTest>

#include <sched.h>
#include <unistd.h>

#include <atomic>

using namespace Qt::StringLiterals;

namespace {

bool writeFile(const QString& name, const QByteArray& text) {
  QFile file(name);
  return file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && file.write(text) == text.size();
}

/// Moves this process to a network of its own; must run before there are threads.
bool leaveTheNetwork() {
  const auto user = QByteArray::number(getuid());
  if (unshare(CLONE_NEWNET) == 0) return true;
  return unshare(CLONE_NEWUSER | CLONE_NEWNET) == 0 && writeFile(u"/proc/self/uid_map"_s, "0 " + user + " 1");
}

bool ip(const char* arguments) { return QProcess::execute(u"ip"_s, QString::fromLatin1(arguments).split(u' ')) == 0; }

bool isAlone = false;

}  // namespace

class X11NetworkPathTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    if (!isAlone) QSKIP("network namespaces are not permitted here");
    if (!ip("tuntap add d0 mode tap")) QSKIP("no tap devices here");
    QVERIFY(ip("addr add 10.9.8.2/24 dev d0"));
  }
  void init() {
    QVERIFY(ip("link set d0 up"));
    path_ = std::make_unique<X11NetworkPath>();
    state_ = kUnknown;
    path_->start([this](bool satisfied) { state_ = satisfied ? kOnline : kOffline; });
    QTRY_COMPARE(state_.load(), kOffline);
  }
  void cleanup() {
    path_.reset();
    QVERIFY(ip("link set d0 down"));
  }

  void followsTheDefaultRoute_data() {
    QTest::addColumn<QByteArray>("route");
    QTest::newRow("IPv4") << QByteArray("default via 10.9.8.1 dev d0");
    QTest::newRow("IPv4 without a gateway") << QByteArray("default dev d0");
    QTest::newRow("IPv6") << QByteArray("::/0 dev d0");
  }
  void followsTheDefaultRoute() {
    QFETCH(QByteArray, route);
    for (int round = 0; round < 3; ++round) {
      QVERIFY(ip("route add " + route));
      QTRY_COMPARE(state_.load(), kOnline);
      QVERIFY(ip("route del " + route));
      QTRY_COMPARE(state_.load(), kOffline);
    }
  }

  /// The kernel says nothing about the routes that go with a link.
  void aLinkTakesItsRoutesAlong() {
    QVERIFY(ip("route add default via 10.9.8.1 dev d0"));
    QTRY_COMPARE(state_.load(), kOnline);
    QVERIFY(ip("link set d0 down"));
    QTRY_COMPARE(state_.load(), kOffline);
  }

  void routesToNowhereDoNotCount() {
    QVERIFY(ip("route add unreachable default metric 900"));
    QVERIFY(ip("route add default dev d0 table 100"));
    QVERIFY(ip("route add 192.0.2.0/24 dev d0"));
    path_ = std::make_unique<X11NetworkPath>();
    state_ = kUnknown;
    path_->start([this](bool satisfied) { state_ = satisfied ? kOnline : kOffline; });
    QTRY_COMPARE(state_.load(), kOffline);
    QVERIFY(ip("route del unreachable default metric 900"));
  }

  void nothingIsReportedAfterDestruction() {
    for (int round = 0; round < 100; ++round) {
      std::atomic<bool> isGone = false;
      std::atomic<bool> isLate = false;
      auto path = std::make_unique<X11NetworkPath>();
      path->start([&](bool) { isLate = isLate || isGone; });
      path.reset();
      isGone = true;
      QVERIFY(!isLate);
    }
  }

 private:
  enum State { kUnknown, kOffline, kOnline };

  std::unique_ptr<X11NetworkPath> path_;
  std::atomic<State> state_ = kUnknown;
};

int main(int argc, char** argv) {
  isAlone = leaveTheNetwork();
  QCoreApplication application(argc, argv);
  X11NetworkPathTest test;
  return QTest::qExec(&test, argc, argv);
}
#include "x11_network_path_test.moc"
