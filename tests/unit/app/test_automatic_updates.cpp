#include <QCryptographicHash>
#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include "app/updates/automatic_updates.h"
#include "core/net/network_monitor.h"
#include "platform/updater.h"
#include "support/fake_clock.h"
#include "support/fake_http.h"
#include "support/fake_platform.h"
#include "support/fake_presenters.h"
#include "support/files.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QByteArray kImage = "the new version";
const QUrl kAddress(u"https://example.org/vantle/macos-arm64.json"_s);

QByteArray description(const QByteArray& version, const QByteArray& image = kImage) {
  QByteArray text = "{'version': 'V', 'file': 'vantle-V-macos-arm64.dmg', 'sha256': 'S', 'bytes': B}";
  text.replace('\'', '"').replace("V", version).replace("B", QByteArray::number(image.size()));
  return text.replace("\"S\"", '"' + QCryptographicHash::hash(image, QCryptographicHash::Sha256).toHex() + '"');
}

/// A system that brings no updates itself; whether a file is signed is for the test to say.
class FakeUpdater final : public Updater {
 public:
  QString downloadName() const override { return name; }
  void verify(const QString& path, const QString& publisher, const JobRef&, Verified answer) override {
    verified.append(path.section(u'/', -1) + u" by "_s + publisher);
    answer(isSigned ? std::expected<void, QString>() : std::unexpected(u"altered"_s));
  }
  void open(const QString& path) override { opened.append(path); }

  QString name = u"macos-arm64"_s;
  bool isSigned = true;
  QStringList verified;
  QStringList opened;
};

struct World {
  explicit World(const UpdateSource& from = {QUrl(u"https://example.org/vantle"_s), u"TEAM123456"_s}) : source(from) {}

  void start() {
    updates.emplace(AutomaticUpdates::Services{http, updater, network, toasts, clock}, source, u"1.1.0"_s,
                    folder.filePath(u"Updates"_s));
    updates->start();
  }
  QStringList files() const { return QDir(folder.filePath(u"Updates"_s)).entryList(QDir::Files); }

  UpdateSource source;
  QTemporaryDir folder;
  FakeHttp http;
  FakeUpdater updater;
  FakeNetworkPath path;
  NetworkMonitor network{path};
  FakeToasts toasts;
  FakeClock clock;
  std::optional<AutomaticUpdates> updates;
};

}  // namespace

class TestAutomaticUpdates : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void anOfferIsReadWhole() {
    const auto offer = UpdateOffer::read(description("1.2.0"), kAddress, u"1.1.0"_s);
    QVERIFY(offer);
    QCOMPARE(offer->version, u"1.2.0"_s);
    QCOMPARE(offer->url, QUrl(u"https://example.org/vantle/vantle-1.2.0-macos-arm64.dmg"_s));
    QCOMPARE(offer->bytes, kImage.size());
    QVERIFY(UpdateOffer::read(description("1.10"), kAddress, u"1.9.9"_s));
  }

  void whatDoesNotFitIsNoOffer_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("no JSON") << QByteArray("<html>");
    QTest::newRow("the same version") << description("1.1.0");
    QTest::newRow("an older one") << description("1.0.9");
    QTest::newRow("a version that leaves the folder") << description("2.0/../../x");
    QTest::newRow("no version number") << description("newest");
    QTest::newRow("a file elsewhere") << description("1.2.0").replace("vantle-", "https://evil.example/vantle-");
    QTest::newRow("a file above") << description("1.2.0").replace("vantle-", "../vantle-");
    QTest::newRow("a short digest") << description("1.2.0").replace("\"sha256\": \"", "\"sha256\": \"00");
    QTest::newRow("too long") << description("1.2.0").replace("\"bytes\": ", "\"bytes\": 99999999");
    QTest::newRow("empty") << description("1.2.0", {});
  }
  void whatDoesNotFitIsNoOffer() {
    QFETCH(const QByteArray, text);
    QVERIFY(!UpdateOffer::read(text, kAddress, u"1.1.0"_s));
  }

  void aNewerVersionIsDownloadedVerifiedAndTold() {
    World world;
    world.start();
    QCOMPARE(world.http.sent.back().url, kAddress);
    QVERIFY(world.http.answer(200, description("1.2.0")));
    QCOMPARE(world.http.sent.back().url.fileName(), u"vantle-1.2.0-macos-arm64.dmg"_s);
    QVERIFY(world.http.answer(200, kImage));
    QCOMPARE(world.updater.verified, QStringList(u"Vantle-1.2.0.dmg by TEAM123456"_s));
    QCOMPARE(world.toasts.shown.size(), 1U);
    QCOMPARE(world.toasts.shown[0].first.title, u"Vantle 1.2.0 is here"_s);
    world.toasts.shown[0].first.onTap();
    QCOMPARE(readFile(world.updater.opened.value(0)), kImage);

    // The next day it is known; at the next start it is there already, and told again.
    world.clock.advance(24h);
    QVERIFY(world.http.answer(200, description("1.2.0")));
    world.start();
    QVERIFY(world.http.answer(200, description("1.2.0")));
    QVERIFY(world.http.waiting.empty());
    QCOMPARE(world.toasts.shown.size(), 2U);
  }

  void whatIsAlteredOrNotSignedIsNotKept() {
    World world;
    world.start();
    QVERIFY(world.http.answer(200, description("1.2.0")));
    QVERIFY(world.http.answer(200, "something else!"));
    QVERIFY(world.updater.verified.isEmpty());
    QVERIFY(world.files().isEmpty());

    world.updater.isSigned = false;
    world.clock.advance(24h);
    QVERIFY(world.http.answer(200, description("1.2.0")));
    QVERIFY(world.http.answer(200, kImage));
    QCOMPARE(world.updater.verified.size(), 1);
    QVERIFY(world.files().isEmpty());
    QVERIFY(world.toasts.shown.empty());
  }

  void whatWasInstalledIsDropped() {
    World world;
    QVERIFY(writeFile(world.folder.filePath(u"Updates/Vantle-1.1.0.dmg"_s), "old"));
    world.start();
    QVERIFY(world.http.answer(200, description("1.1.0")));
    QVERIFY(world.files().isEmpty());
  }

  void failuresWaitForTheNextDay() {
    World world;
    world.start();
    QVERIFY(world.http.answer(std::unexpected(HttpError{})));
    world.clock.advance(24h);
    QVERIFY(world.http.answer(500, {}));
    world.path.report(false);
    QTRY_VERIFY(!world.network.isOnline());
    world.clock.advance(24h);
    QCOMPARE(world.http.sent.size(), 2U);
    world.path.report(true);
    QTRY_VERIFY(world.network.isOnline());
    world.clock.advance(24h);
    QCOMPARE(world.http.sent.size(), 3U);
    QVERIFY(world.toasts.shown.empty());
  }

  void nothingIsLookedForWithoutASource() {
    World unnamed({{}, u"TEAM123456"_s});
    unnamed.start();
    World unsigned_({QUrl(u"https://example.org/vantle"_s), {}});
    unsigned_.start();
    World insecure({QUrl(u"http://example.org/vantle"_s), u"TEAM123456"_s});
    insecure.start();
    World packaged;
    packaged.updater.name.clear();
    packaged.start();
    for (World* world : {&unnamed, &unsigned_, &insecure, &packaged}) QVERIFY(world->http.sent.empty());
  }
};

QTEST_GUILESS_MAIN(TestAutomaticUpdates)
#include "test_automatic_updates.moc"
