#include <QJsonDocument>
#include <QTest>

#include "support/files.h"
#include "support/strict_server.h"
#include "support/transform_world.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

using Mode = TextTransformMode;
using Order = AITextTransformClient::Order;

namespace {

QByteArray json(QByteArray text) { return text.replace('\'', '"'); }

/// Requests that really travel, to a server that answers with `bytes`.
struct Stage {
  explicit Stage(const QByteArray& bytes) {
    server.answer = [bytes](const auto&) { return StrictServer::Answer{bytes}; };
    world.builtIn.place = ServiceLocation{server.url({}), server.url({}), "token", true};
  }
  /// The text, or why there is none.
  QString transform(const Order& order) {
    std::optional<AITextTransformClient::Result> result;
    const Job job = Job::start();
    world.transforms.transform(order, job, [&result](const auto& given) { result = given; });
    if (!QTest::qWaitFor([&result] { return result.has_value(); })) return u"nothing"_s;
    return *result ? **result : result->error().description();
  }

  StrictServer server;
  QtHttpClient http;
  TransformWorld world{&http};
};

}  // namespace

class TestTextTransformClient : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void theRequestSaysWhatToDo_data() {
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("instruction");
    QTest::addColumn<QByteArray>("body");
    const auto row = [](const char* name, Mode mode, const QString& instruction, const QByteArray& members) {
      QTest::addRow("%s", name) << int(mode) << instruction << json("{'text':' A \\\"text\\\"\\nä '" + members + "}");
    };
    row("improve", Mode::improve, {}, ",'action':'improve'");
    row("enhance prompt", Mode::enhancePrompt, {}, ",'action':'enhance-prompt'");
    row("shorten", Mode::shorten, {}, ",'action':'shorten'");
    row("a fixed mode has no instruction", Mode::fixGrammar, u"be kind"_s, ",'action':'fix-grammar'");
    row("custom", Mode::custom, u"be kind"_s, ",'instruction':'be kind'");
    row("custom without", Mode::custom, {}, "");
  }
  void theRequestSaysWhatToDo() {
    QFETCH(const int, mode);
    QFETCH(const QString, instruction);
    QFETCH(const QByteArray, body);
    Stage stage(StrictServer::response(200, json("{'text': 'done'}")));
    const auto given = instruction.isNull() ? std::nullopt : std::optional(instruction);
    QCOMPARE(stage.transform({u" A \"text\"\nä "_s, Mode(mode), given}), u"done"_s);
    QCOMPARE(stage.server.requests.size(), 1U);
    StrictServer::Request& request = stage.server.requests.front();
    QCOMPARE(request.line, "POST /v1/text HTTP/1.1");
    QCOMPARE(request.headers["content-type"], "application/json");
    QCOMPARE(request.headers["authorization"], "Bearer token");
    const auto sent = QJsonDocument::fromJson(request.body);
    QVERIFY(sent.isObject());
    QCOMPARE(sent, QJsonDocument::fromJson(body));
    QCOMPARE(stage.server.malformed, 0);
  }

  void withoutACredentialThereIsNoHeader() {
    TransformWorld world;
    world.real.configuration.update([](ServiceSettings& settings) { settings.api = u"https://api.example"_s; });
    const Job job = Job::start();
    world.transforms.transform({u"a"_s, Mode::improve}, job, [](const auto&) {});
    QTRY_COMPARE(world.http.sent.size(), 1U);
    QCOMPARE(world.http.sent.front().url, QUrl(u"https://api.example/v1/text"_s));
    QCOMPARE(world.http.sent.front().deadline, std::chrono::milliseconds(60s));
    QCOMPARE(world.http.sent.front().headers, HttpHeaders({{"Content-Type", "application/json"}}));
  }

  void theTextIsFoundInTheAnswer_data() {
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("text");
    QTest::addRow("as it is") << json("{'result': 'b', 'text': ' a\\n'}") << u" a\n"_s;
    QTest::addRow("an empty one is passed over") << json("{'text': '', 'result': 'b', 'output': 'c'}") << u"b"_s;
    QTest::addRow("output") << json("{'text': 3, 'output': 'c'}") << u"c"_s;
    QTest::addRow("in data") << json("{'data': {'text': 'd'}}") << u"d"_s;
    QTest::addRow("not in data of data") << json("{'data': {'data': {'text': 'd'}}}") << QString();
    QTest::addRow("an object without") << json("{'answer': 'x'}") << QString();
    QTest::addRow("plain") << QByteArray("plain\n") << u"plain"_s;
    QTest::addRow("blank") << QByteArray(" \n") << QString();
  }
  void theTextIsFoundInTheAnswer() {
    QFETCH(const QByteArray, body);
    QFETCH(const QString, text);
    QCOMPARE(AITextTransformClient::extractText(body).value_or(QString()), text);
  }

  void failuresHaveTheirTexts_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");
    const QByteArray refusal = json("{'metric': 'text', 'plan': 'Free', 'limit': 20}");
    QTest::addRow("no text") << StrictServer::response(200, json("{'a': '") + QByteArray(100, 'x') + json("'}"))
                             << u"No text in response: {\"a\": \""_s + QString(73, u'x');
    QTest::addRow("401") << StrictServer::response(401, "who?") << u"Request failed (HTTP 401) who?"_s;
    QTest::addRow("402") << StrictServer::response(402, refusal)
                         << u"You've used all 20 text transforms this month on the Free plan. Resets next month."_s;
    QTest::addRow("402 without a refusal") << StrictServer::response(402, "pay") << u"Request failed (HTTP 402) pay"_s;
    QTest::addRow("500") << StrictServer::response(500, QByteArray(100, 'x'))
                         << u"Request failed (HTTP 500) "_s + QString(80, u'x');
    QTest::addRow("cut") << StrictServer::response(200, "abc").chopped(1)
                         << u"The connection broke off: Connection closed"_s;
  }
  void failuresHaveTheirTexts() {
    QFETCH(const QByteArray, bytes);
    QFETCH(const QString, text);
    Stage stage(bytes);
    QCOMPARE(stage.transform({u"a"_s, Mode::improve}), text);
  }

  void theCountersAreTakenFromARefusalToo() {
    Stage stage(StrictServer::response(402, "x", "X-Quota-Limit: 20\r\nX-Quota-Remaining: 0\r\n"));
    stage.transform({u"a"_s, Mode::improve});
    const auto& metrics = stage.world.real.quota.metrics();
    QVERIFY(metrics.contains(u"text"_s));
    QCOMPARE(metrics.at(u"text"_s), (MetricUsage{20, 20}));
  }

  void aServiceThatDoesNotListenIsTold() {
    Stage stage({});
    {
      const StrictServer gone;
      stage.world.builtIn.place = ServiceLocation{gone.url({}), gone.url({}), "token", true};
    }
    QCOMPARE(stage.transform({u"a"_s, Mode::improve}), u"The service cannot be reached: Connection refused"_s);
  }

  void aMissingServiceIsTold() {
    Stage stage({});
    stage.world.builtIn.place = std::unexpected(ServiceError{ServiceError::Reason::other, u"There is none."_s});
    QCOMPARE(stage.transform({u"a"_s, Mode::improve}), u"There is none."_s);
    QVERIFY(stage.server.requests.empty());
  }

  void theOutputIsKeptInItsFile() {
    TransformWorld world;
    QCOMPARE(world.settings.value().output, TransformOutput::clipboard);
    world.useReplace();
    const QString path = world.folders.file(u"AITextTransform/settings.json"_s);
    QCOMPARE(readFile(path).simplified(), json("{ 'output': 'replace' }"));
    QCOMPARE(AITextTransformStore(path).value().output, TransformOutput::replace);
    QVERIFY(writeFile(path, json("{'output': 'a drawer'}")));
    QCOMPARE(AITextTransformStore(path).value().output, TransformOutput::clipboard);
  }
};

QTEST_GUILESS_MAIN(TestTextTransformClient)
#include "test_text_transform_client.moc"
