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
    AppServer server([](const QJsonObject& request, const auto& reply) { reply({{u"echo"_s, request["do"_L1]}}); });
    QVERIFY(server.listen());
    AppServer second([](const QJsonObject&, const auto&) {});
    QVERIFY(!second.listen());
    auto answer = std::async(std::launch::async, [] { return AppClient::request({{u"do"_s, u"ping"_s}}); });
    QTRY_VERIFY(answer.wait_for(std::chrono::seconds(0)) == std::future_status::ready);
    QCOMPARE(answer.get().value()["echo"_L1].toString(), u"ping"_s);
  }

  void anAnswerMayComeLater() {
    std::vector<AppServer::Reply> waiting;
    AppServer server([&waiting](const QJsonObject&, const auto& reply) { waiting.push_back(reply); });
    QVERIFY(server.listen());
    QLocalSocket gone;
    gone.connectToServer(app_channel::socketPath());
    gone.write("{}\n{}\n");
    QTRY_COMPARE(waiting.size(), 1U);
    gone.abort();
    QLocalSocket patient;
    patient.connectToServer(app_channel::socketPath());
    patient.write("{}\n");
    QTRY_COMPARE(waiting.size(), 2U);
    for (const auto& reply : waiting) reply({{u"ok"_s, true}});
    QTRY_VERIFY(patient.canReadLine());
    QCOMPARE(patient.readLine(), "{\"ok\":true}\n");
  }

  void strangersCannotStopTheServer() {
    AppServer server([](const QJsonObject&, const auto& reply) { reply({{u"ok"_s, true}}); });
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
