#include <QTest>

#include "support/ask_world.h"
#include "support/files.h"
#include "tools/ask_ai/quick_question_client.h"
#include "tools/screen_ask/image_ask_client.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const std::vector<AskExchange> kEarlier = {{u"What is 1+1?"_s, u"Two, „2“."_s}};

/// JSON with the other quotes.
QByteArray json(QByteArray text) { return text.replace('\'', '"'); }

const QByteArray kHistory = json("[{'answer':'Two, „2“.','question':'What is 1+1?'}]");

struct Ask : AskWorld {
  Ask() { useOwnHosts(); }

  void askPlain(const AskQuestion& question) { question_.ask(question, {}, call()); }
  void askAboutCapture(const AskQuestion& question) { capture_.ask(question, "PNG of the capture", call()); }

 private:
  QuickQuestionClient question_{answers()};
  ImageAskClient capture_{answers()};
};

}  // namespace

class TestAnswers : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void aPlainQuestionIsJSON() {
    Ask ask;
    ask.askPlain({u"Grüße?"_s});
    QVERIFY(ask.isWaiting());
    QCOMPARE(ask.request().method, "POST");
    QCOMPARE(ask.request().url, QUrl(u"https://api.example/v1/answers"_s));
    QCOMPARE(ask.header("Content-Type"), "application/json");
    QCOMPARE(ask.header("Authorization"), "Bearer secret");
    QCOMPARE(ask.header("Accept"), "text/event-stream");
    QVERIFY(ask.request().timeout == 60s);
    // Nor does one that comes in drops go on for ever.
    QVERIFY(ask.request().answerDeadline == 10min);
    QCOMPARE(QJsonDocument::fromJson(ask.request().body).object(), (QJsonObject{{u"question"_s, u"Grüße?"_s}}));

    ask.askPlain({u"And plus one?"_s, kEarlier});
    QTRY_COMPARE(ask.http.sent.size(), 2U);
    const QJsonObject body = QJsonDocument::fromJson(ask.request().body).object();
    QCOMPARE(body.keys(), QStringList({u"history"_s, u"question"_s}));
    QCOMPARE(body.value(u"history"_s).toArray(), QJsonDocument::fromJson(kHistory).array());
  }

  void theBuiltInServiceHasATokenOfItsOwn() {
    AskWorld world;
    QuickQuestionClient client(world.answers());
    client.ask({u"?"_s}, {}, world.call());
    QVERIFY(world.isWaiting());
    QCOMPARE(world.header("Authorization"), "Bearer embedded");
    // Which is nobody else's business.
    QVERIFY(writeFile(world.folders.file(u"QuickQuestion/config.json"_s),
                      json("{'endpoint':'https://mine.example/x','token':''}")));
    client.ask({u"?"_s}, {}, world.call());
    QTRY_COMPARE(world.http.sent.size(), 2U);
    QCOMPARE(world.request().url, QUrl(u"https://mine.example/x"_s));
    QVERIFY(!world.header("Authorization").contains("embedded"));
    QVERIFY(QFile::remove(world.folders.file(u"QuickQuestion/config.json"_s)));
    world.builtIn.place = std::unexpected(ServiceError{ServiceError::Reason::other, u"It does not start."_s});
    client.ask({u"?"_s}, {}, world.call());
    QTRY_COMPARE(world.said(), u"It does not start."_s);
  }

  void anAnswerIsFoundWhereServicesPutIt_data() {
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("said");
    const auto row = [](const char* name, const QByteArray& body, const QString& said) {
      QTest::newRow(name) << body << said;
    };
    row("answer", json("{'text':'b','answer':'a'}"), u"a"_s);
    row("text", json("{'answer':'','text':'b'}"), u"b"_s);
    row("result", json("{'response':'d','result':'c'}"), u"c"_s);
    row("data", json("{'data':{'answer':'e'}}"), u"e"_s);
    row("plain", "\n Two. \n", u"Two."_s);
    row("nothing", json("{'data':{'text':'e'}}"), u"No answer in response: {\"data\":{\"text\":\"e\"}}"_s);
    row("long", "[\"" + QByteArray(200, 'x') + "\"]", u"No answer in response: [\""_s + QString(78, u'x'));
    row("looks like events", "data: {}\n\nevent: done", u"data: {}\n\nevent: done"_s);
  }
  void anAnswerIsFoundWhereServicesPutIt() {
    QFETCH(QByteArray, body);
    Ask ask;
    ask.askPlain({u"?"_s});
    QVERIFY(ask.isWaiting());
    ask.http.answer(200, body);
    QTEST(ask.said(), "said");
  }

  void anAnswerGrowsWhileItIsStreamed() {
    Ask ask;
    ask.askAboutCapture({u"?"_s});
    QVERIFY(ask.isWaiting());
    QCOMPARE(ask.request().receivedType, "text/event-stream");
    QVERIFY(ask.request().timeout == 90s);
    const QByteArray body = AskWorld::delta(u"Grü"_s) + ": still here\n\n" + AskWorld::event("other", {}) +
                            AskWorld::delta(u"ße"_s) + AskWorld::done(u"Grüße"_s) + AskWorld::delta(u"late"_s);
    for (const char byte : body) ask.http.deliver(QByteArray(1, byte));
    QCOMPARE(ask.grown, QStringList({u"Grü"_s, u"Grüße"_s}));
    QCOMPARE(ask.said(), u"nothing yet"_s);
    ask.http.answer(HttpResponse{
        200, {{"content-type", "text/event-stream"}, {"X-Quota-Limit", "50"}, {"X-Quota-Remaining", "20"}}, body});
    QCOMPARE(ask.said(), u"Grüße"_s);
    QCOMPARE(ask.services.quota.metrics().at(u"image_answers"_s), (MetricUsage{30, 50}));
  }

  void aStreamThatEndsBadlyIsNoAnswer_data() {
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("said");
    const QByteArray begun = AskWorld::delta(u"Half of"_s);
    QTest::newRow("cut") << begun << u"The answer broke off before its end."_s;
    QTest::newRow("error") << begun + AskWorld::event("error", {{u"error"_s, u"The provider is tired."_s}})
                           << u"The provider is tired."_s;
    QTest::newRow("error without a text") << AskWorld::event("error", {}) << u"The answer broke off before its end."_s;
    QTest::newRow("empty") << AskWorld::done({})
                           << u"No answer in response: event: done\ndata: {\"answer\":\"\"}\n\n"_s;
    QTest::newRow("no words but its own") << begun + AskWorld::done({}) << u"Half of"_s;
    QTest::newRow("flood") << "data: " + QByteArray(5'000'000, 'x') << u"The answer of the service is too large."_s;
  }
  void aStreamThatEndsBadlyIsNoAnswer() {
    QFETCH(QByteArray, body);
    Ask ask;
    ask.askPlain({u"?"_s});
    QVERIFY(ask.isWaiting());
    ask.stream(body);
    QTEST(ask.said(), "said");
  }
};

QTEST_GUILESS_MAIN(TestAnswers)
#include "test_answers.moc"
