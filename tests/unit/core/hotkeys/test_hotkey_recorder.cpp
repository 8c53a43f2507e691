#include <QTest>

#include "core/hotkeys/hotkey_recorder_model.h"
#include "support/world.h"

using namespace Qt::StringLiterals;

namespace {

constexpr Hotkey kUplink{32, 0x1800};
constexpr Hotkey kPromptify{35, 0x1800};
constexpr Hotkey kFree{7, 0x1800};

struct Stage {
  ToolWorld world;
  HotkeyRecorderModel recorder{
      {world.hotkeys, world.sounds, [this](const QString& id) { return world.registry.tool(id)->name(); }},
      u"uplink"_s};
  Hotkey bound() { return world.hotkeys.binding(u"uplink"_s).value_or(Hotkey{}); }
};

}  // namespace

class TestHotkeyRecorder : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void takesAFreeCombination() {
    Stage stage;
    QCOMPARE(stage.recorder.text(), u"⌃⌥U"_s);
    stage.recorder.start();
    QCOMPARE(stage.recorder.text(), u"Press shortcut…"_s);
    QVERIFY(stage.world.hotkeyBackend.registered.empty());
    stage.recorder.record(kFree);
    QVERIFY(!stage.recorder.isRecording());
    QCOMPARE(stage.recorder.text(), u"⌃⌥X"_s);
    QCOMPARE(stage.world.hotkeyBackend.registered.size(), std::size_t{14});
    QVERIFY(stage.world.hotkeyBackend.isRegistered(kFree));
  }

  void refusesAndGoesOn() {
    Stage stage;
    stage.recorder.start();
    stage.recorder.record({40, 0});
    QCOMPARE(stage.recorder.hint(), u"Add a modifier (⌃⌥⇧⌘)"_s);
    QCOMPARE(stage.world.sounds.beeps, 0);
    stage.recorder.record(kPromptify);
    QCOMPARE(stage.recorder.hint(), u"Already used by Image to Prompt"_s);
    QCOMPARE(stage.world.sounds.beeps, 1);
    QVERIFY(stage.recorder.isRecording());
    QCOMPARE(stage.bound(), kUplink);
    stage.recorder.record(kUplink);
    QVERIFY(!stage.recorder.isRecording());
    QCOMPARE(stage.bound(), kUplink);
  }

  void functionKeysNeedNoModifier() {
    Stage stage;
    stage.recorder.start();
    stage.recorder.record({96, 0});
    QCOMPARE(stage.recorder.text(), u"F5"_s);
  }

  void escapeKeepsTheOldBinding() {
    Stage stage;
    stage.recorder.start();
    stage.recorder.record({53, 0x1800});
    QVERIFY(!stage.recorder.isRecording());
    QCOMPARE(stage.bound(), kUplink);
    QVERIFY(stage.world.hotkeyBackend.isRegistered(kUplink));
    stage.recorder.record(kFree);
    QCOMPARE(stage.bound(), kUplink);
  }

  void clearingLeavesNoShortcut() {
    Stage stage;
    stage.recorder.clear();
    QVERIFY(!stage.recorder.hasBinding());
    QCOMPARE(stage.recorder.text(), u"Record Shortcut"_s);
    QVERIFY(!stage.world.hotkeyBackend.isRegistered(kUplink));
  }
};

QTEST_GUILESS_MAIN(TestHotkeyRecorder)
#include "test_hotkey_recorder.moc"
