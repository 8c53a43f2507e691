#include <QLocalSocket>
#include <QTemporaryDir>
#include <QTest>

#include <future>
#include <memory>

#include "core/net/app_channel.h"

using namespace Qt::StringLiterals;

class TestAppChannel : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    directory_ = std::make_unique<QTemporaryDir>();
    QFile::setPermissions(directory_->path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    qputenv("XDG_RUNTIME_DIR", directory_->path().toUtf8());
  }

  void nobodyRunning() {
    const auto answer = AppClient::request({{u"do"_s, u"x"_s}});
    QVERIFY(!answer);
    QCOMPARE(answer.error().kind, AppClient::Error::Kind::notRunning);
  }

  void requestIsAnsweredAndThePlaceIsOne() {
    AppServer server([](const QJsonObject& request) { return QJsonObject{{u"echo"_s, request["do"_L1]}}; });
    QVERIFY(server.listen());
    AppServer second([](const QJsonObject&) { return QJsonObject(); });
    QVERIFY(!second.listen());
    auto answer = std::async(std::launch::async, [] { return AppClient::request({{u"do"_s, u"ping"_s}}); });
    QTRY_VERIFY(answer.wait_for(std::chrono::seconds(0)) == std::future_status::ready);
    QCOMPARE(answer.get().value()["echo"_L1].toString(), u"ping"_s);
  }

  void strangersCannotStopTheServer() {
    AppServer server([](const QJsonObject&) { return QJsonObject{{u"ok"_s, true}}; });
    QVERIFY(server.listen());
    QLocalSocket rude;
    rude.connectToServer(app_channel::socketPath());
    QVERIFY(rude.waitForConnected());
    rude.write(QByteArray(200'000, 'x'));
    rude.flush();
    QLocalSocket garbage;
    garbage.connectToServer(app_channel::socketPath());
    garbage.write("not json\n");
    QTRY_VERIFY(garbage.canReadLine());
    QCOMPARE(garbage.readLine(), "{\"ok\":true}\n");
  }

 private:
  std::unique_ptr<QTemporaryDir> directory_;
};

QTEST_GUILESS_MAIN(TestAppChannel)
#include "test_app_channel.moc"
