#include <QFile>
#include <QTest>
#include <QUuid>

#include "support/files.h"
#include "support/world.h"

using namespace Qt::StringLiterals;

namespace {

void consent(World& world) {
  world.preferences.update([](Preferences& preferences) { preferences.shareUsageStats = true; });
}

}  // namespace

class TestAnalytics : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void nothingWithoutConsentOrNetwork() {
    World world;
    world.analytics.track(UsageEvent::appLaunched);
    consent(world);
    world.setOnline(false);
    world.analytics.track(UsageEvent::appLaunched);
    QVERIFY(world.events.empty());
    QVERIFY(!QFile::exists(world.folders.file(u"install-id"_s)));
  }

  void bodyHoldsWhatIsPromisedAndNoMore() {
    World world;
    consent(world);
    world.analytics.track(UsageEvent::appLaunched);
    world.analytics.track(UsageEvent::toolActivated, u"uplink"_s);
    const QJsonObject& event = world.events.at(1);
    QCOMPARE(event.keys(), (QStringList{u"appVersion"_s, u"event"_s, u"installId"_s, u"osVersion"_s, u"tool"_s}));
    QCOMPARE(event["event"_L1].toString(), u"tool_activated"_s);
    QCOMPARE(event["tool"_L1].toString(), u"uplink"_s);
    QVERIFY(!world.events[0].contains("tool"_L1));
  }

  void installIdIsKeptAndRemade() {
    const QTemporaryDir directory;
    const QString path = directory.filePath(u"Vantle/install-id"_s);
    const QString first = InstallIdentity(path).id();
    QCOMPARE(first, first.toUpper());
    QVERIFY(!QUuid::fromString(first).isNull());
    QCOMPARE(InstallIdentity(path).id(), first);
    QVERIFY(writeFile(path, "  kept-id \n"));
    QCOMPARE(InstallIdentity(path).id(), u"kept-id"_s);
    QVERIFY(writeFile(path, " \n"));
    const QString second = InstallIdentity(path).id();
    QVERIFY(second != first && !QUuid::fromString(second).isNull());
  }
};

QTEST_GUILESS_MAIN(TestAnalytics)
#include "test_analytics.moc"
