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
  void setOnline(bool online) {
    path.report(online);
    QTRY_COMPARE(network.isOnline(), online);
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
    const auto offer = UpdateOffer::read(description("1.2.0"), kAddress, u"1.1.0"_s).value();
    QVERIFY(offer);
    QCOMPARE(offer->version, u"1.2.0"_s);
    QCOMPARE(offer->url, QUrl(u"https://example.org/vantle/vantle-1.2.0-macos-arm64.dmg"_s));
    QCOMPARE(offer->bytes, kImage.size());
    QVERIFY(UpdateOffer::read(description("1.10"), kAddress, u"1.9.9"_s).value());
    for (const char* old : {"1.1.0", "1.0.9"})
      QVERIFY(!UpdateOffer::read(description(old), kAddress, u"1.1.0"_s).value());
  }

  void whatDoesNotFitIsNoOffer_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("reason");
    const QString unnamed = u"its description names no version"_s;
    const QString unfit = u"the description of 1.2.0 does not fit"_s;
    QTest::newRow("no JSON") << QByteArray("<html>") << unnamed;
    QTest::newRow("a version that leaves the folder") << description("2.0/../../x") << unnamed;
    QTest::newRow("no version number") << description("newest") << unnamed;
    QTest::newRow("a file elsewhere") << description("1.2.0").replace("vantle-", "https://evil.example/vantle-")
                                      << unfit;
    QTest::newRow("a file above") << description("1.2.0").replace("vantle-", "../vantle-") << unfit;
    QTest::newRow("a short digest") << description("1.2.0").replace("\"sha256\": \"", "\"sha256\": \"00") << unfit;
    QTest::newRow("empty") << description("1.2.0", {}) << unfit;
    QTest::newRow("too long") << description("1.2.0").replace("\"bytes\": ", "\"bytes\": 99999999")
                              << u"1.2.0 is larger than the 512 MB that are downloaded at most"_s;
  }
  void whatDoesNotFitIsNoOffer() {
    QFETCH(const QByteArray, text);
    const auto offer = UpdateOffer::read(text, kAddress, u"1.1.0"_s);
    QVERIFY(!offer);
    QTEST(offer.error(), "reason");
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

  /// A download that will not do is not begun anew before the next day.
  void whatIsAlteredOrNotSignedIsNotKept() {
    World world;
    world.start();
    QVERIFY(world.http.answer(200, description("1.2.0")));
    QVERIFY(world.http.answer(200, "something else!"));
    QVERIFY(world.updater.verified.isEmpty() && world.files().isEmpty());

    world.clock.advance(24h);
    QVERIFY(world.http.answer(200, description("1.2.0")));
    QVERIFY(world.http.answer(std::unexpected(HttpError{HttpError::Reason::tooLarge, {}})));
    QVERIFY(world.files().isEmpty());

    world.updater.isSigned = false;
    world.clock.advance(24h);
    QVERIFY(world.http.answer(200, description("1.2.0")));
    QVERIFY(world.http.answer(200, kImage));
    QCOMPARE(world.updater.verified.size(), 1);
    QVERIFY(world.files().isEmpty() && world.toasts.shown.empty());
    world.clock.advance(24h - 1ms);
    QCOMPARE(world.http.sent.size(), 6U);
  }

  void whatIsNotWholeIsNotKept() {
    World world;
    const auto beginDownload = [&world] {
      QVERIFY(world.http.answer(200, description("1.2.0")));
      world.http.deliver("the new");
      QCOMPARE(world.files(), QStringList(u"Vantle-1.2.0.dmg.part"_s));
    };
    world.start();
    beginDownload();
    QVERIFY(world.http.answer(std::unexpected(HttpError{HttpError::Reason::broken, {}})));
    QVERIFY(world.files().isEmpty());
    world.clock.advance(1min);
    beginDownload();
    world.updates.reset();
    QVERIFY(world.files().isEmpty());
  }

  void whatWasInstalledOrLeftOverIsDropped() {
    World world;
    QVERIFY(writeFile(world.folder.filePath(u"Updates/Vantle-1.1.0.dmg"_s), "old"));
    QVERIFY(writeFile(world.folder.filePath(u"Updates/Vantle-1.2.0.dmg.part"_s), "a killed program's"));
    world.start();
    QCOMPARE(world.files(), QStringList(u"Vantle-1.1.0.dmg"_s));
    QVERIFY(world.http.answer(200, description("1.1.0")));
    QVERIFY(world.files().isEmpty());
  }

  void aFailureIsTriedAgainLaterAndLater() {
    World world;
    world.start();
    std::size_t looks = 1;
    for (const int minutes : {1, 2, 4, 8, 16, 32, 64, 128, 240, 240}) {
      QVERIFY(looks % 2 == 0 ? world.http.answer(500, {}) : world.http.answer(std::unexpected(HttpError{})));
      world.clock.advance(std::chrono::minutes(minutes) - 1ms);
      QCOMPARE(world.http.sent.size(), looks);
      world.clock.advance(1ms);
      QCOMPARE(world.http.sent.size(), ++looks);
    }
    // After a look that was finished it begins with a minute again.
    QVERIFY(world.http.answer(200, description("1.1.0")));
    world.clock.advance(24h - 1ms);
    QCOMPARE(world.http.sent.size(), looks);
    world.clock.advance(1ms);
    QVERIFY(world.http.answer(500, {}));
    world.clock.advance(1min);
    QCOMPARE(world.http.sent.size(), looks + 2);
    QVERIFY(world.toasts.shown.empty());
  }

  void aLookWithoutANetworkIsMadeSoonAfterThereIsOne() {
    World world;
    world.setOnline(false);
    world.start();
    world.clock.advance(30h);
    QVERIFY(world.http.sent.empty());
    world.setOnline(true);
    // It comes and goes.
    world.clock.advance(59s);
    world.setOnline(false);
    world.clock.advance(1s);
    world.setOnline(true);
    world.clock.advance(59s);
    QVERIFY(world.http.sent.empty());
    world.clock.advance(1s);
    QCOMPARE(world.http.sent.size(), 1U);

    // There is one look at a time, and none that is not due.
    world.setOnline(false);
    world.setOnline(true);
    world.clock.advance(1h);
    QCOMPARE(world.http.sent.size(), 1U);
    QVERIFY(world.http.answer(200, description("1.1.0")));
    world.setOnline(false);
    world.setOnline(true);
    world.clock.advance(1h);
    QCOMPARE(world.http.sent.size(), 1U);
    world.setOnline(false);
    world.clock.sleep(23h);
    world.setOnline(true);
    world.clock.advance(1min);
    QCOMPARE(world.http.sent.size(), 2U);
  }

  void aLookThatHangsEndsWithTheNext() {
    World world;
    world.start();
    QVERIFY(world.http.answer(200, description("1.2.0")));
    world.clock.advance(24h);
    QCOMPARE(world.http.sent.size(), 3U);
    QVERIFY(world.files().isEmpty());
    QVERIFY(world.http.answer(200, kImage));
    QVERIFY(world.updater.verified.isEmpty());
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
