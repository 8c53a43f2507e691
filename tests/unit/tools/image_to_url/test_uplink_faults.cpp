#include <QTest>

#include <csignal>

#include "services/service_process.h"
#include "support/strict_server.h"
#include "support/uplink_world.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Image to URL with requests that really travel, to a server of the test's.
struct Stage {
  explicit Stage(const QUrl& links) {
    world.builtIn.place = ServiceLocation{links, links, "token", true};
    world.copyImage(100'000);
    tool->activate();
  }
  QString outcome() {
    if (!QTest::qWaitFor([this] { return world.toasts.shown.size() >= 2; })) return u"nothing"_s;
    return world.toast();
  }
  bool isClipboardTouched() const { return !world.pasteboard.texts.isEmpty(); }

  QtHttpClient http;
  UplinkWorld world{&http};
  std::unique_ptr<UplinkTool> tool = world.makeTool(world.permissions);
};

const QByteArray kScript = R"x({"url": "javascript:alert(1)"})x";
const QByteArray kLink = R"({"url": "https://links.example/l/1"})";

}  // namespace

class TestUplinkFaults : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void whatTheServiceSaysIsShown_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("toast");
    const auto ok = [](const QByteArray& body) { return StrictServer::response(200, body); };
    QTest::addRow("a page instead") << ok("<html>Log in") << u"Upload failed|No URL in response: <html>Log in|8"_s;
    QTest::addRow("ok") << ok("ok") << u"Upload failed|No URL in response: ok|8"_s;
    QTest::addRow("a script for a link") << ok(kScript)
                                         << u"Upload failed|No URL in response: %1|8"_s.arg(QString::fromUtf8(kScript));
    QTest::addRow("invalid UTF-8") << ok("\xff\xfe") << u"Upload failed|No URL in response: |8"_s;
    QTest::addRow("invalid UTF-8 and a status")
        << StrictServer::response(500, "\xff") << u"Upload failed|Upload failed (HTTP 500) |8"_s;
    QTest::addRow("hidden characters") << StrictServer::response(403, "a\nb\x1b[31m")
                                       << u"Upload failed|Upload failed (HTTP 403) a\\nb\\u{1b}[31m|8"_s;
    QTest::addRow("500 with 1 MB") << StrictServer::response(500, QByteArray(1'000'000, 'x'))
                                   << u"Upload failed|Upload failed (HTTP 500) %1|8"_s.arg(QString(80, u'x'));
    QTest::addRow("more than anybody wants to hear")
        << ok(QByteArray(5'000'000, 'x')) << u"Upload failed|The answer of the service is too large.|8"_s;
    QTest::addRow("a cut body") << StrictServer::response(200, kLink).chopped(3)
                                << u"Upload failed|The connection broke off: Connection closed|8"_s;
    QTest::addRow("no answer at all") << QByteArray()
                                      << u"Upload failed|The connection broke off: Connection closed|8"_s;
    QTest::addRow("a redirect elsewhere")
        << StrictServer::response(307, {}, "Location: http://other.example/v1/images\r\n")
        << u"Upload failed|The service sent the request on to another host, which is not followed.|8"_s;
  }
  void whatTheServiceSaysIsShown() {
    QFETCH(const QByteArray, bytes);
    QFETCH(const QString, toast);
    StrictServer server;
    server.answer = [&bytes](const auto&) { return StrictServer::Answer{bytes}; };
    Stage stage(server.url({}));
    QCOMPARE(stage.outcome(), toast);
    QVERIFY(!stage.isClipboardTouched());
    QVERIFY(!server.requests.empty());
    QCOMPARE(server.malformed, 0);
  }

  void aServiceThatIsKilledIsShown() {
    QTemporaryDir directory;
    SystemClock clock;
    ServiceProcess service({QStringLiteral(VANTLE_SERVICE_PROGRAM), directory.filePath(u"service"_s)}, clock);
    std::optional<ServiceLocation> location;
    const Job job = Job::start();
    service.locate(job, [&location](const auto& found) { location = found.value(); });
    QTRY_VERIFY(location);
    const auto pid = static_cast<pid_t>(service.processId());
    QCOMPARE(kill(pid, SIGSTOP), 0);
    Stage stage(location->links);
    stage.world.builtIn.place = *location;
    QTRY_COMPARE(stage.world.toast(), u"Uploading image… (97 KB)||120"_s);
    QCOMPARE(kill(pid, SIGKILL), 0);
    const QString outcome = stage.outcome();
    QVERIFY2(outcome.startsWith(u"Upload failed|The "_s), qPrintable(outcome));
    QVERIFY(!stage.isClipboardTouched());
  }
};

QTEST_GUILESS_MAIN(TestUplinkFaults)
#include "test_uplink_faults.moc"
