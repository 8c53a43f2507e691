#include <QTest>

#include "app/app_delegate.h"
#include "support/files.h"
#include "support/world.h"
#include "tools/frequent_clis/command_store.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

using FirstRun = AppDelegate::FirstRun;

class TestAppDelegate : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void launchRunsEveryStepInOrder() {
    World world;
    world.preferences.update([](Preferences& preferences) { preferences.shareUsageStats = true; });
    world.hotkeyBackend.taken = {{17, 0x1800}};
    FakePermissions permissions;
    CommandStore commands(world.folders, world.clock);
    QStringList steps;
    AppDelegate delegate({world.settings, world.analytics, world.registry, world.hotkeys, permissions, commands},
                         {.applyAppearance = [&] { steps.append(u"appearance"_s); },
                          .run = [&](AppAction action) { steps.append(u"action %1"_s.arg(static_cast<int>(action))); },
                          .announceUpdate = [&] { steps.append(u"update"_s); },
                          .showFirstRun = [&](FirstRun) { steps.append(u"first run"_s); }});
    delegate.didFinishLaunching(world.makeTools());
    QCOMPARE(steps, (QStringList{u"appearance"_s, u"update"_s, u"first run"_s}));
    QCOMPARE(world.events.at(0)["event"_L1].toString(), u"app_launched"_s);
    QCOMPARE(world.hotkeyBackend.registered.size(), std::size_t{17});

    world.hotkeyBackend.press({49, 0x1800});
    world.hotkeyBackend.press({43, 0x1800});
    world.hotkeyBackend.press({32, 0x1800});
    QCOMPARE(steps.mid(3), (QStringList{u"action 3"_s, u"action 0"_s}));
    QCOMPARE(world.activations(u"uplink"_s), 1);
  }

  void terminationSavesTheCommands() {
    World world;
    FakePermissions permissions;
    CommandStore commands(world.folders, world.clock);
    AppDelegate delegate({world.settings, world.analytics, world.registry, world.hotkeys, permissions, commands}, {});
    commands.add();
    delegate.willTerminate();
    QVERIFY(readFile(world.folders.file(u"FrequentCLIs/commands.json"_s)).contains("New Command"));
  }

  void firstRunResumesWhereItHasTo() {
    AppSettings settings;
    QCOMPARE(AppDelegate::firstRun(settings, true), FirstRun::start);
    settings.onboardingReachedPermissions = true;
    QCOMPARE(AppDelegate::firstRun(settings, true), FirstRun::permissions);
    settings.onboardingCompleted = true;
    QCOMPARE(AppDelegate::firstRun(settings, true), FirstRun::nothing);
    QCOMPARE(AppDelegate::firstRun(settings, false), FirstRun::permissions);
  }
};

QTEST_GUILESS_MAIN(TestAppDelegate)
#include "test_app_delegate.moc"
