#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include "support/command_world.h"

using namespace Qt::StringLiterals;

namespace {

const QByteArray kAnswer = "{\"text\": \"I have three cats.\"}";

struct Stage : CommandWorld {
  Stage() {
    vault.secrets[u"api"_s] = "secret";
    useServer(server);
  }
  Run transform(QStringList arguments, const QByteArray& typed = "i has three cat\n") {
    arguments.prepend(u"transform"_s);
    return run(arguments, typed);
  }
  void answer(int status, const QByteArray& body) {
    server.answer = [=](const auto&) { return StrictServer::Answer{StrictServer::response(status, body)}; };
  }

  StrictServer server;
};

}  // namespace

class TestTransformCommand : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void itRewritesStandardInput() {
    Stage stage;
    stage.answer(200, kAnswer);
    const Run run = stage.transform({u"--mode"_s, u"fix-grammar"_s});
    QCOMPARE(run.out, u"I have three cats.\n"_s);
    QCOMPARE(run.err, QString());
    QCOMPARE(run.code, exit_code::kSuccess);
    StrictServer::Request& request = stage.server.requests.front();
    QCOMPARE(request.line, "POST /v1/text HTTP/1.1");
    QCOMPARE(request.headers["authorization"], "Bearer secret");
    QCOMPARE(QJsonDocument::fromJson(request.body).object(),
             (QJsonObject{{u"text"_s, u"i has three cat\n"_s}, {u"action"_s, u"fix-grammar"_s}}));

    stage.answer(200, "lines\n\n");
    QCOMPARE(stage.transform({u"--instruction"_s, u" as a pirate "_s}, "ü").out, u"lines\n"_s);
    QCOMPARE(QJsonDocument::fromJson(stage.server.requests.back().body).object(),
             (QJsonObject{{u"text"_s, u"ü"_s}, {u"instruction"_s, u"as a pirate"_s}}));
  }

  void whatCannotBeUnderstoodIsNotSent_data() {
    QTest::addColumn<QStringList>("arguments");
    QTest::addRow("nothing to do") << QStringList();
    QTest::addRow("two things") << QStringList{u"--mode"_s, u"shorten"_s, u"--instruction"_s, u"x"_s};
    QTest::addRow("no mode") << QStringList{u"--mode"_s, u"custom"_s};
    QTest::addRow("an empty mode") << QStringList{u"--mode"_s, QString()};
    QTest::addRow("an empty instruction") << QStringList{u"--instruction"_s, u" "_s};
    QTest::addRow("a word") << QStringList{u"--mode"_s, u"shorten"_s, u"notes.txt"_s};
  }
  void whatCannotBeUnderstoodIsNotSent() {
    QFETCH(const QStringList, arguments);
    Stage stage;
    const Run run = stage.transform(arguments);
    QCOMPARE(run.code, exit_code::kUsage);
    QVERIFY2(run.err.contains(u"usage: vantle transform --mode improve|"_s), qPrintable(run.err));
    QVERIFY(stage.server.requests.empty());
  }

  void failuresAreTold() {
    Stage stage;
    const QStringList shorten{u"--mode"_s, u"shorten"_s};
    QCOMPARE(stage.transform(shorten, " \n").err, u"vantle: there is no text on standard input\n"_s);
    QCOMPARE(stage.transform(shorten, "\xff").err, u"vantle: the text is not UTF-8\n"_s);
    QCOMPARE(stage.transform(shorten, QByteArray(4 * 1024 * 1024 + 1, 'x')).err,
             u"vantle: the text is larger than 4 MB\n"_s);
    QVERIFY(stage.server.requests.empty());
    stage.answer(200, "{}");
    const Run run = stage.transform(shorten);
    QCOMPARE(run.err, u"vantle: No text in response: {}\n"_s);
    QCOMPARE(run.out, QString());
    QCOMPARE(run.code, exit_code::kFailure);
  }
};

QTEST_GUILESS_MAIN(TestTransformCommand)
#include "test_transform_command.moc"
