#include <QTest>

#include "support/files.h"
#include "support/transform_world.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

using Mode = TextTransformMode;

namespace {

QByteArray json(QByteArray text) { return text.replace('\'', '"'); }

}  // namespace

class TestTextTransformClient : public QObject {
  Q_OBJECT

 private Q_SLOTS:
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

  void aMissingServiceIsTold() {
    TransformWorld world;
    world.builtIn.place = std::unexpected(ServiceError{ServiceError::Reason::other, u"There is none."_s});
    QString said;
    const Job job = Job::start();
    world.transforms.transform({u"a"_s, Mode::improve}, job, [&said](const auto& result) {
      if (!result) said = result.error().description();
    });
    QTRY_COMPARE(said, u"There is none."_s);
    QVERIFY(world.http.sent.empty());
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
