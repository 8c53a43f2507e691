#include <QTest>

#include "core/hotkeys/refused_shortcuts.h"
#include "support/world.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr Hotkey kUplink{32, 0x1800};
constexpr Hotkey kOther{7, 0x1800};

struct OpenShortcutsWindow final : ShortcutsWindowGate {
  bool closeIfVisible() override { return std::exchange(visible, false); }
  bool visible = true;
};

}  // namespace

class TestHotkeyCenter : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void bootstrapPrefersStoredBindingsAndSkipsDisabledTools() {
    World world;
    world.settings.update([](AppSettings& settings) {
      settings.hotkeys[u"uplink"_s] = kOther;
      settings.hotkeys[u"feedback"_s] = std::nullopt;
      settings.hotkeys[u"a-tool-of-the-past"_s] = Hotkey{1, 0x1800};
      settings.disabledTools = {u"promptify"_s};
    });
    world.bootstrap();
    QCOMPARE(world.hotkeyBackend.registered.size(), std::size_t{12});
    QVERIFY(world.hotkeyBackend.isRegistered(kOther));
    QVERIFY(!world.hotkeyBackend.isRegistered(kUplink));
    QVERIFY(!world.hotkeys.binding(u"feedback"_s));
    QVERIFY(world.hotkeys.binding(u"promptify"_s));
    QCOMPARE(world.hotkeyBackend.installs, 1);
  }

  void pressSummonsTheOwner() {
    ToolWorld world;
    int actions = 0;
    world.hotkeys.registerAction({49, 0x1800}, [&] { ++actions; });
    world.hotkeyBackend.press(kUplink);
    world.hotkeyBackend.press({49, 0x1800});
    world.hotkeys.handlePress(4711);
    QCOMPARE(world.activations(u"uplink"_s), 1);
    QCOMPARE(actions, 1);
  }

  void openShortcutsWindowClosesFirst() {
    ToolWorld world;
    OpenShortcutsWindow window;
    world.hotkeys.setShortcutsWindow(&window);
    world.hotkeyBackend.press(kUplink);
    QVERIFY(!window.visible);
    world.clock.advance(119ms);
    QCOMPARE(world.activations(u"uplink"_s), 0);
    world.clock.advance(1ms);
    QCOMPARE(world.activations(u"uplink"_s), 1);
    world.hotkeyBackend.press(kUplink);
    QCOMPARE(world.activations(u"uplink"_s), 2);
  }

  void whatTheWindowStartsWaitsForItToo() {
    ToolWorld world;
    OpenShortcutsWindow window;
    int started = 0;
    const auto start = [&started] { ++started; };
    world.hotkeys.handOver(start);
    QCOMPARE(started, 1);
    world.hotkeys.setShortcutsWindow(&window);
    world.hotkeys.handOver(start);
    QVERIFY(!window.visible);
    QCOMPARE(started, 1);
    world.clock.advance(120ms);
    QCOMPARE(started, 2);
  }

  void theApplicationsOwnComeBeforeTools() {
    World world;
    int actions = 0;
    world.settings.update([](AppSettings& settings) { settings.hotkeys[u"uplink"_s] = Hotkey{49, 0x1800}; });
    world.bootstrap();
    world.hotkeys.registerAction({49, 0x1800}, [&] { ++actions; });
    world.hotkeyBackend.press({49, 0x1800});
    QCOMPARE(actions, 1);
    QCOMPARE(world.activated, QStringList());
    QVERIFY(!world.hotkeys.isRegistered(u"uplink"_s));
  }

  void aCombinationThatBecomesFreeIsTaken() {
    ToolWorld world;
    world.hotkeys.setHotkey(kUplink, u"promptify"_s);
    QVERIFY(!world.hotkeys.isRegistered(u"promptify"_s));
    world.registry.setEnabled(u"uplink"_s, false);
    QVERIFY(world.hotkeys.isRegistered(u"promptify"_s));
    world.registry.setEnabled(u"uplink"_s, true);
    QVERIFY(!world.hotkeys.isRegistered(u"uplink"_s));
    world.hotkeys.resetHotkey(u"promptify"_s);
    QVERIFY(world.hotkeys.isRegistered(u"uplink"_s) && world.hotkeys.isRegistered(u"promptify"_s));
  }

  void whatTheSystemGivesLaterIsTaken() {
    World world;
    int actions = 0;
    const Hotkey own{49, 0x1800};
    world.hotkeyBackend.taken = {kUplink, own};
    world.bootstrap();
    world.hotkeys.registerAction(own, [&] { ++actions; });
    QCOMPARE(world.hotkeys.refused().size(), std::size_t{2});
    world.hotkeyBackend.taken = {};
    world.hotkeyBackend.giveMore();
    QVERIFY(world.hotkeys.refused().empty());
    QVERIFY(world.hotkeys.isRegistered(u"uplink"_s));
    world.hotkeyBackend.press(own);
    QCOMPARE(actions, 1);
  }

  void rebindingIsStoredAndResettable() {
    ToolWorld world;
    world.hotkeys.setHotkey(kOther, u"uplink"_s);
    QVERIFY(world.hotkeyBackend.isRegistered(kOther) && !world.hotkeyBackend.isRegistered(kUplink));
    world.hotkeys.setHotkey(std::nullopt, u"promptify"_s);

    const SettingsStore reread(world.folders.file(u"settings.json"_s));
    QCOMPARE(reread.value().hotkeys.at(u"uplink"_s), kOther);
    QVERIFY(reread.value().hotkeys.contains(u"promptify"_s) && !reread.value().hotkeys.at(u"promptify"_s));

    world.hotkeys.resetHotkey(u"uplink"_s);
    QCOMPARE(world.hotkeys.binding(u"uplink"_s), kUplink);
    QVERIFY(!world.settings.value().hotkeys.contains(u"uplink"_s));
  }

  void disablingKeepsTheBinding() {
    ToolWorld world;
    world.registry.setEnabled(u"uplink"_s, false);
    world.hotkeyBackend.press(kUplink);
    QCOMPARE(world.activations(u"uplink"_s), 0);
    QCOMPARE(world.hotkeys.binding(u"uplink"_s), kUplink);
    world.hotkeys.setHotkey(kOther, u"uplink"_s);
    QVERIFY(!world.hotkeyBackend.isRegistered(kOther));
    world.registry.setEnabled(u"uplink"_s, true);
    world.hotkeyBackend.press(kOther);
    QCOMPARE(world.activations(u"uplink"_s), 1);
  }

  void pausingLeavesOnlyTheApplicationsOwn() {
    ToolWorld world;
    world.hotkeys.registerAction({49, 0x1800}, [] {});
    const auto before = world.hotkeyBackend.registered;
    world.hotkeys.pauseAll();
    QCOMPARE(world.hotkeyBackend.registered.size(), std::size_t{1});
    world.hotkeys.setHotkey(kOther, u"uplink"_s);
    QVERIFY(!world.hotkeyBackend.isRegistered(kOther));
    world.hotkeys.resumeAll();
    QCOMPARE(world.hotkeyBackend.registered.size(), std::size_t{15});
    QVERIFY(world.hotkeyBackend.isRegistered(kOther));
    for (const auto& [id, hotkey] : before)
      if (hotkey.keyCode != 49) QVERIFY(!world.hotkeyBackend.registered.contains(id));
  }

  void refusalsAreSilentButKnown() {
    World world;
    world.hotkeyBackend.taken = {kUplink, {17, 0x1800}, {14, 0x1800}};
    world.bootstrap();
    world.hotkeys.registerAction({17, 0x1800}, [] {});
    QVERIFY(!world.hotkeys.isRegistered(u"uplink"_s));
    QVERIFY(world.toasts.shown.empty());
    QCOMPARE(world.hotkeys.refused().size(), std::size_t{2});
    QCOMPARE(freeCombination(world.hotkeyBackend, {{38, 0x1800}}, 9000), (Hotkey{46, 0x1800}));
    QVERIFY(!world.hotkeyBackend.registered.contains(9000));

    world.hotkeys.setHotkey(kOther, u"uplink"_s);
    QCOMPARE(world.hotkeys.refused().size(), std::size_t{1});
  }
};

QTEST_GUILESS_MAIN(TestHotkeyCenter)
#include "test_hotkey_center.moc"
