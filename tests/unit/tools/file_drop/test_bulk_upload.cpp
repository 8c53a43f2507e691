#include <QTest>
#include <QThreadPool>

#include "support/full_disk.h"
#include "support/strict_multipart.h"
#include "support/strict_server.h"
#include "support/upload_world.h"

using namespace Qt::StringLiterals;

namespace {

/// Uploads over real connections.
struct RealWorld {
  QtHttpClient http;
  StrictServer server;
  UploadWorld world{&http};

  RealWorld() { world.useEndpoint(server.url(u"/v1/upload"_s)); }
  void answerWith(const QByteArray& bytes) {
    server.answer = [bytes](const auto&) { return StrictServer::Answer{bytes}; };
  }
};

}  // namespace

class TestBulkUpload : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void aSingleFileGoesAsItIs() {
    RealWorld real;
    real.answerWith(StrictServer::response(200, "{\"url\":\"https://links.example/a\"}"));
    const std::initializer_list<std::pair<QString, QByteArray>> kinds = {
        {u"a.png"_s, "image/png"},
        {u"Größe.JSON"_s, "application/json"},
        {u"blob.unheardof"_s, "application/octet-stream"},
        {u"README"_s, "application/octet-stream"}};
    for (const auto& [name, type] : kinds) {
      const QByteArray content = "content of\r\n--" + name.toUtf8();
      real.world.upload({real.world.file(name, content)});
      QTRY_VERIFY(real.world.outcome);
      QCOMPARE(real.world.outcome->value(), QUrl(u"https://links.example/a"_s));
      real.world.outcome.reset();
      const auto request = std::exchange(real.server.requests, {}).at(0);
      QCOMPARE(request.headers.at("authorization"), "Bearer t");
      const auto parts = StrictForm::parse(request.headers.at("content-type"), request.body);
      QVERIFY(parts);
      QCOMPARE(*parts, std::vector({FormPart{"files", name.toUtf8(), type, content}}));
    }
    QVERIFY(real.world.archiver->packed.empty());
  }

  void severalOrAFolderBecomeOneZip() {
    RealWorld real;
    real.answerWith(StrictServer::response(201, "https://links.example/z\r\n"));
    UploadWorld& world = real.world;
    const QString one = world.file(u"a/notes.txt"_s);
    const QString two = world.file(u"b/notes.txt"_s);
    for (const QStringList& paths : {QStringList{one, two}, QStringList{world.path(u"a"_s)}}) {
      world.upload(paths);
      QTRY_VERIFY(world.outcome);
      QVERIFY2(*world.outcome,
               qPrintable(world.outcome->has_value() ? QString() : world.outcome->error().description()));
      world.outcome.reset();
      const auto request = std::exchange(real.server.requests, {}).at(0);
      const auto parts = StrictForm::parse(request.headers.at("content-type"), request.body);
      QVERIFY(parts && parts->size() == 1);
      QCOMPARE(parts->at(0).name, "files");
      QCOMPARE(parts->at(0).contentType, "application/zip");
      QCOMPARE(parts->at(0).content, "PK");
      QCOMPARE(parts->at(0).filename, "bulk-2023-11-14T221320Z.zip");
      QTRY_COMPARE(world.leftInTemporary(), QStringList());
      QCOMPARE(world.archiver->packed.size(), static_cast<std::size_t>(paths.size()));
    }
    const QFile::Permissions others = QFile::ReadGroup | QFile::ExeGroup | QFile::ReadOther | QFile::ExeOther;
    QVERIFY(!(world.archiver->folderPermissions & others));
    QCOMPARE(world.archiver->packed[0].name, u"a"_s);
  }

  void theLimitIsExact() {
    UploadWorld world;
    world.services.useOwnHosts();
    world.upload({world.sparse(u"fits.bin"_s, 256'000'000)});
    QTRY_COMPARE(world.services.http.sent.size(), std::size_t{1});
    QVERIFY(world.services.http.sent[0].stream->size() > 256'000'000);

    world.upload({world.sparse(u"large.bin"_s, 255'000'000), world.sparse(u"more.bin"_s, 1'000'001)});
    QTRY_VERIFY(world.outcome);
    QCOMPARE(world.outcome->error().description(),
             u"That's 256 MB — the maximum upload size is 256 MB. Remove some items and try again."_s);
    QCOMPARE(world.services.http.sent.size(), std::size_t{1});
    QVERIFY(world.archiver->packed.empty());
  }

  void aFileThatHasGrownSinceIsRefused() {
    UploadWorld world;
    world.services.useOwnHosts();
    const auto before = world.items({world.file(u"log.bin"_s)});
    world.sparse(u"log.bin"_s, 256'000'001);
    world.job = Job::start();
    world.client.upload(before, world.job, {}, [&](const auto& result) { world.outcome = result; });
    QTRY_VERIFY(world.outcome);
    QVERIFY(!*world.outcome && world.outcome->error().isAboutItems());
    QVERIFY(world.services.http.sent.empty());
  }

  void anAnswerThatIsCutGivesNoLink() {
    RealWorld cut;
    cut.answerWith("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\n{\"url\":\"https://links.example/half");
    cut.world.upload({cut.world.file(u"x"_s), cut.world.file(u"y"_s)});
    QTRY_VERIFY(cut.world.outcome);
    QVERIFY(!*cut.world.outcome);
    QTRY_COMPARE(cut.world.leftInTemporary(), QStringList());
  }

  void whatVanishesOrShrinksIsAnError() {
    RealWorld real;
    const QString path = real.world.file(u"gone.txt"_s);
    const auto before = real.world.items({path});
    QFile::remove(path);
    real.world.job = Job::start();
    real.world.client.upload(before, real.world.job, {}, [&](const auto& result) { real.world.outcome = result; });
    QTRY_VERIFY(real.world.outcome);
    QVERIFY(real.world.outcome->error().description().startsWith(u"gone.txt: "_s));

    real.world.outcome.reset();
    real.world.upload({path});
    QTRY_VERIFY(real.world.outcome);
    QCOMPARE(real.world.outcome->error().description(), u"gone.txt: There is no such file or folder."_s);
    QVERIFY(real.server.requests.empty());
  }

  void anArchiveThatCannotBeMadeIsToldAndLeavesNothing() {
    RealWorld real;
    real.world.archiver->error = ArchiveError{.message = u"a/x: Permission denied"_s};
    const QStringList paths{real.world.file(u"a/x"_s), real.world.file(u"b/x"_s)};
    real.world.upload(paths);
    QTRY_VERIFY(real.world.outcome);
    QCOMPARE(real.world.outcome->error().description(), u"Couldn't create the zip: a/x: Permission denied"_s);
    QTRY_COMPARE(real.world.leftInTemporary(), QStringList());

    real.world.archiver->error.reset();
    real.world.outcome.reset();
    const SmallestFiles disk;
    real.world.upload(paths);
    QTRY_VERIFY(real.world.outcome);
    QVERIFY(real.world.outcome->error().description().startsWith(u"Couldn't create the zip: "_s));
    QTRY_COMPARE(real.world.leftInTemporary(), QStringList());
    QVERIFY(real.server.requests.empty());
  }

  void cancellingAtAnyMomentLeavesNothing() {
    RealWorld real;
    real.server.answer = [](const auto&) { return StrictServer::Answer{{}, true}; };
    const QStringList paths{real.world.file(u"a/x"_s), real.world.file(u"b/x"_s)};
    real.world.archiver->holds = true;
    real.world.upload(paths);
    QTRY_VERIFY(!real.world.leftInTemporary().isEmpty());
    real.world.job.cancel();
    QThreadPool::globalInstance()->waitForDone();
    QTRY_COMPARE(real.world.leftInTemporary(), QStringList());

    real.world.archiver->holds = false;
    real.world.upload(paths);
    QTRY_COMPARE(real.server.requests.size(), std::size_t{1});
    QCOMPARE(real.world.leftInTemporary().size(), 1);
    real.world.job.cancel();
    QTRY_COMPARE(real.server.closed, 1);
    QTRY_COMPARE(real.world.leftInTemporary(), QStringList());
    QVERIFY(!real.world.outcome);
  }

  void theEndOfTheClientRemovesWhatItSends() {
    QTemporaryDir temporary;
    ServiceWorld services;
    services.useOwnHosts();
    Job job = Job::start();
    {
      BulkUploadClient client({services.services.environments, services.http, services.clock,
                               std::make_shared<FakeArchiver>(), temporary.path()});
      client.testConnection(job, [](const auto&) {});
      QTRY_COMPARE(services.http.sent.size(), std::size_t{1});
      QCOMPARE(services.http.sent[0].stream->readAll().count("quarnel bulk upload connection test"), 1);
      QCOMPARE(QDir(temporary.path()).entryList({u"VibeBulk-*"_s}).size(), 1);
    }
    QCOMPARE(QDir(temporary.path()).entryList({u"VibeBulk-*"_s}).size(), 0);
  }
};

QTEST_GUILESS_MAIN(TestBulkUpload)
#include "test_bulk_upload.moc"
