#include <QJsonObject>
#include <QTest>

#include <algorithm>
#include <set>

#include "core/hotkeys/app_shortcuts.h"
#include "core/hotkeys/key_press.h"
#include "core/tools/tool.h"

using namespace Qt::StringLiterals;

class TestHotkey : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void displayWritesModifiersInFixedOrder() {
    const Hotkey all{32, carbon::kCommand | carbon::kShift | carbon::kOption | carbon::kControl};
    QCOMPARE(all.display(), u"⌃⌥⇧⌘U"_s);
    QCOMPARE(all.keyCaps(), (QStringList{u"⌃"_s, u"⌥"_s, u"⇧"_s, u"⌘"_s, u"U"_s}));
    QCOMPARE(all.spelled(), u"Ctrl+Alt+Shift+Super+U"_s);
    QCOMPARE((Hotkey{36, 0x1800}.display()), u"⌃⌥↩"_s);
    QCOMPARE((Hotkey{42, 0x1800}.display()), u"⌃⌥\\"_s);
    QCOMPARE((Hotkey{200, 0x1800}.display()), u"⌃⌥key200"_s);
  }

  void storedFormSurvivesAndNonsenseIsRejected() {
    Hotkey read;
    QVERIFY(decode(encode({96, 0x0900}), read));
    QCOMPARE(read, (Hotkey{96, 0x0900}));
    for (const QJsonValue& bad : {QJsonValue(u"⌃U"_s), QJsonValue(QJsonObject{{u"keyCode"_s, -1}}),
                                  QJsonValue(QJsonObject{{u"keyCode"_s, 1.5}, {u"carbonModifiers"_s, 0}}),
                                  QJsonValue(QJsonObject{{u"keyCode"_s, 5e9}, {u"carbonModifiers"_s, 0}})})
      QVERIFY(!decode(bad, read));
    QCOMPARE(read, (Hotkey{96, 0x0900}));
  }

  void lettersGoByWhatTheyTypeAndElsewhereByTheirPlace() {
    const KeyPress dvorakB{.keyCode = keycode::kN, .command = true, .charactersIgnoringModifiers = u"b"_s};
    QVERIFY(!dvorakB.isCommand(u'n', keycode::kN));
    const KeyPress dvorakN{.keyCode = 37, .command = true, .charactersIgnoringModifiers = u"n"_s};
    QVERIFY(dvorakN.isCommand(u'n', keycode::kN));
    const KeyPress greekN{.keyCode = keycode::kN, .command = true, .charactersIgnoringModifiers = u"\u03bd"_s};
    QVERIFY(greekN.isCommand(u'n', keycode::kN));
    const KeyPress unaccompanied{.keyCode = keycode::kN, .charactersIgnoringModifiers = u"n"_s};
    QVERIFY(!unaccompanied.isCommand(u'n', keycode::kN));
  }

  void everyDefaultIsItsOwn() {
    std::set<QString> seen;
    for (const AppShortcut& shortcut : kAppShortcuts) seen.insert(shortcut.hotkey.display());
    for (const ToolInfo& tool : toolTable()) {
      QCOMPARE(tool.defaultHotkey.carbonModifiers, 0x1800u);
      seen.insert(tool.defaultHotkey.display());
    }
    QCOMPARE(seen.size(), std::size_t{18});
    QCOMPARE(std::ranges::count_if(toolTable(), &ToolInfo::requiresNetwork), 9);
  }
};

QTEST_GUILESS_MAIN(TestHotkey)
#include "test_hotkey.moc"
