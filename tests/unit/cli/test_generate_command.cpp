#include <QTest>

#include "support/command_world.h"
#include "support/strict_multipart.h"
#include "tools/generate_image/generate_image_settings.h"
#include "tools/generate_image/history_folder.h"

using namespace Qt::StringLiterals;

namespace {

using World = CommandWorld;
const QByteArray kPNG = QByteArray::fromBase64(
    "iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAIAAACQd1PeAAAADElEQVR4nGP4z8AAAAMBAQDJ/pLvAAAAAElFTkSuQmCC");

}  // namespace

class TestGenerateCommand : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void generateWritesTheImage() {
    World world;
    StrictServer server;
    world.useServer(server);
    const QByteArray png = kPNG;
    server.answer = [&](const auto&) {
      return StrictServer::Answer{StrictServer::response(200, png, "Content-Type: image/png\r\n")};
    };
    const QString file = world.directory.filePath(u"fox.png"_s);
    const QString reference = world.image(u"one.gif"_s);
    const Run run = world.run({u"generate"_s, u"-"_s, u"--image"_s, reference, u"--image"_s, reference, u"--edit"_s,
                               u"--size"_s, u"1024x1024"_s, u"-o"_s, file},
                              " a fox\n");
    QCOMPARE(run.err, QString());
    QCOMPARE(run.code, exit_code::kSuccess);
    QCOMPARE(readFile(file), png);
    const auto& request = server.requests.front();
    QCOMPARE(request.line, "POST /v1/image-generate HTTP/1.1");
    const auto parts = StrictForm::parse(request.headers.at("content-type"), request.body);
    QVERIFY(parts && parts->size() == 6);
    QCOMPARE(parts->at(0), (FormPart{"edit", {}, {}, "true"}));
    QCOMPARE(parts->at(1), (FormPart{"prompt", {}, {}, "a fox"}));
    QCOMPARE(parts->at(3), (FormPart{"size", {}, {}, "1024x1024"}));
    QVERIFY(parts->at(5).content.startsWith("\x89PNG"));
    // With what it was made from it is in the application's history.
    const HistoryFolder history(world.folders.file(u"GenerateImage/History"_s));
    QCOMPARE(history.entries().size(), 1U);
    const auto kept = history.read(history.entries()[0]);
    QVERIFY(kept && kept->image.png == png);
    QCOMPARE(kept->request.prompt, u"a fox"_s);
    QVERIFY(kept->request.isEdit && kept->request.references.size() == 2);
    QCOMPARE(world.run({u"generate"_s, u"a hen"_s, u"--no-history"_s, u"-o"_s, file}).code, exit_code::kSuccess);
    QCOMPARE(history.entries().size(), 1U);
  }

  /// An image that was paid for is not lost when one of its two places is.
  void generateKeepsTheImageWhereItCan() {
    World world;
    StrictServer server;
    world.useServer(server);
    server.answer = [](const auto&) { return StrictServer::Answer{StrictServer::response(200, kPNG)}; };
    const HistoryFolder history(world.folders.file(u"GenerateImage/History"_s));
    QVERIFY(QFile::link(u"/dev/null"_s, world.directory.filePath(u"null.png"_s)));
    const Run unwritten = world.run({u"generate"_s, u"a"_s, u"-o"_s, world.directory.filePath(u"null.png"_s)});
    QCOMPARE(unwritten.code, exit_code::kFailure);
    QVERIFY(unwritten.err.contains(u"the image is in Generate Image's history"_s));
    QCOMPARE(history.entries().size(), 1U);
    GenerateImageStore(world.folders.file(u"GenerateImage/settings.json"_s)).update([](auto& settings) {
      settings.historyMegabytes = 1;
    });
    QVERIFY(
        history.write(entryOf({}, QDateTime::currentDateTimeUtc().addDays(-1)), kPNG + QByteArray(999'999, 'x'), {}));
    const QString file = world.directory.filePath(u"fox.png"_s);
    QCOMPARE(world.run({u"generate"_s, u"b"_s, u"-o"_s, file}).code, exit_code::kSuccess);
    QCOMPARE(history.entries().size(), 2U);
    QVERIFY(QDir(world.folders.file(u"GenerateImage/History"_s)).removeRecursively());
    QVERIFY(writeFile(world.folders.file(u"GenerateImage/History"_s), "in its place"));
    const Run unkept = world.run({u"generate"_s, u"c"_s, u"-o"_s, file});
    QCOMPARE(unkept.code, exit_code::kSuccess);
    QVERIFY(unkept.err.startsWith(u"vantle: not kept in the history: "_s));
    QCOMPARE(readFile(file), kPNG);
  }

  /// Before anything is sent and paid for.
  void generateSaysWhatIsWrong() {
    World world;
    StrictServer server;
    world.useServer(server);
    const QString file = world.directory.filePath(u"fox.png"_s);
    const QString text = world.image(u"text.png"_s, "no picture");
    for (const QStringList& arguments : {QStringList{},
                                         {u"a fox"_s},
                                         {u" "_s, u"-o"_s, file},
                                         {u"a"_s, u"fox"_s, u"-o"_s, file},
                                         {u"a"_s, u"-o"_s, file, u"--size"_s, u"huge"_s},
                                         {u"a"_s, u"-o"_s, file, u"--edit"_s}})
      QCOMPARE(world.run(QStringList(u"generate"_s) + arguments).code, exit_code::kUsage);
    QCOMPARE(world.run({u"generate"_s, u"a"_s, u"--image"_s, text, u"-o"_s, file}).err,
             u"vantle: %1: this is not an image that can be read, or it is too large\n"_s.arg(text));
    QCOMPARE(world.run({u"generate"_s, u"a"_s, u"-o"_s, u"/nowhere/fox.png"_s}).err,
             u"vantle: /nowhere/fox.png: nothing can be written there\n"_s);
    QVERIFY(server.requests.empty());
    server.answer = [](const auto&) { return StrictServer::Answer{StrictServer::response(500, "oops")}; };
    const Run failed = world.run({u"generate"_s, u"a"_s, u"-o"_s, file});
    QCOMPARE(failed.err, u"vantle: Generation failed (HTTP 500) oops\n"_s);
    QCOMPARE(failed.code, exit_code::kFailure);
    QVERIFY(!QFile::exists(file));
  }
};

QTEST_GUILESS_MAIN(TestGenerateCommand)
#include "test_generate_command.moc"
