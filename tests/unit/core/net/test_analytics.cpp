#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QUuid>

#include "support/files.h"
#include "support/world.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

void consent(World& world) {
  world.preferences.update([](Preferences& preferences) { preferences.shareUsageStats = true; });
}

}  // namespace

class TestAnalytics : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void nothingWithoutConsentNetworkOrService() {
    World world;
    world.analytics.track(UsageEvent::appLaunched);
    consent(world);
    world.setOnline(false);
    world.analytics.track(UsageEvent::appLaunched);
    world.setOnline(true);
    world.endpoint.reset();
    world.analytics.track(UsageEvent::appLaunched);
    QVERIFY(world.http.sent.empty());
    QVERIFY(!QFile::exists(world.folders.file(u"install-id"_s)));
  }

  void bodyHoldsWhatIsPromisedAndNoMore() {
    World world;
    consent(world);
    world.analytics.track(UsageEvent::appLaunched);
    world.analytics.track(UsageEvent::toolActivated, u"uplink"_s);
    const HttpRequest& request = world.http.sent.at(1);
    const QJsonObject body = QJsonDocument::fromJson(request.body).object();
    QCOMPARE(body.keys(), (QStringList{u"appVersion"_s, u"event"_s, u"installId"_s, u"osVersion"_s, u"tool"_s}));
    QCOMPARE(body["event"_L1].toString(), u"tool_activated"_s);
    QCOMPARE(body["tool"_L1].toString(), u"uplink"_s);
    QVERIFY(!QJsonDocument::fromJson(world.http.sent[0].body).object().contains("tool"_L1));
    QCOMPARE(request.method, "POST");
    QCOMPARE(request.timeout, 15s);
    QVERIFY(std::ranges::find(request.headers, std::pair<QByteArray, QByteArray>("Authorization", "Bearer secret")) !=
            request.headers.end());
  }

  void installIdIsKeptAndRemade() {
    const QTemporaryDir directory;
    const QString path = directory.filePath(u"Vantle/install-id"_s);
    const QString first = InstallIdentity(path).id();
    QCOMPARE(first, first.toUpper());
    QVERIFY(!QUuid::fromString(first).isNull());
    QCOMPARE(InstallIdentity(path).id(), first);
    QVERIFY(writeFile(path, "  kept-id \n"));
    QCOMPARE(InstallIdentity(path).id(), u"kept-id"_s);
    QVERIFY(writeFile(path, " \n"));
    const QString second = InstallIdentity(path).id();
    QVERIFY(second != first && !QUuid::fromString(second).isNull());
  }

  void endpointComesFromTheServicesFile() {
    const QTemporaryDir directory;
    const Folders folders{directory.path()};
    QVERIFY(!EventEndpoint::current(folders));
    const auto endpoint = [&](const QJsonValue& base) {
      const QJsonObject services{{u"api"_s, base}, {u"token"_s, u"t"_s}};
      writeFile(folders.file(u"services.json"_s), QJsonDocument(services).toJson());
      return EventEndpoint::current(folders);
    };
    const auto full = endpoint(u"https://a.example/base/"_s);
    QCOMPARE(full->url, QUrl(u"https://a.example/base/v1/events"_s));
    QCOMPARE(full->bearer, "t");
    QCOMPARE(endpoint(u"http://127.0.0.1:9/"_s)->url, QUrl(u"http://127.0.0.1:9/v1/events"_s));
    const QJsonArray refused{u"http://a.example"_s, u"ftp://a.example"_s, u"/x"_s, 7};
    for (const QJsonValue& base : refused) QVERIFY(!endpoint(base));
    writeFile(folders.file(u"services.json"_s), "not json");
    QVERIFY(!EventEndpoint::current(folders));
  }

  void eventsReachARealServer() {
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    QByteArray received;
    connect(&server, &QTcpServer::newConnection, this, [&] {
      QTcpSocket* socket = server.nextPendingConnection();
      connect(socket, &QTcpSocket::readyRead, socket, [&received, socket] { received += socket->readAll(); });
    });
    QtHttpClient client;
    client.sendAndForget({.method = "POST",
                          .url = QUrl(u"http://127.0.0.1:%1/v1/events"_s.arg(server.serverPort())),
                          .headers = {{"Content-Type", "application/json"}},
                          .body = "{\"event\":\"app_launched\"}",
                          .timeout = 15s});
    QTRY_VERIFY(received.endsWith("{\"event\":\"app_launched\"}"));
    QVERIFY(received.startsWith("POST /v1/events HTTP/1.1\r\n"));
  }
};

QTEST_GUILESS_MAIN(TestAnalytics)
#include "test_analytics.moc"
