#include "core/ui/key_event.h"

#include <QKeyEvent>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// A press as X11 reports it: `position` is the key's code there, 0 where it does not matter.
QKeyEvent pressed(int key, Qt::KeyboardModifiers modifiers = {}, const QString& text = {}, quint32 position = 0) {
  return QKeyEvent(QEvent::KeyPress, key, modifiers, position, 0, 0, text);
}

}  // namespace

class KeyEventTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void namesKeysByTheirSymbolElseByTheirPosition_data() {
    QTest::addColumn<int>("key");
    QTest::addColumn<quint32>("position");
    QTest::addColumn<quint32>("keyCode");
    QTest::newRow("Return") << int(Qt::Key_Return) << 36U << 36U;
    QTest::newRow("keypad Enter") << int(Qt::Key_Enter) << 104U << 76U;
    QTest::newRow("Z of a German keyboard, where Y is elsewhere") << int(Qt::Key_Z) << 29U << 6U;
    QTest::newRow("shifted digit") << int(Qt::Key_Exclam) << 10U << 18U;
    QTest::newRow("letter that the US layout lacks") << int(Qt::Key_Odiaeresis) << 47U << 41U;
    QTest::newRow("Shift+Tab") << int(Qt::Key_Backtab) << 23U << 48U;
  }

  void namesKeysByTheirSymbolElseByTheirPosition() {
    QFETCH(int, key);
    QFETCH(quint32, position);
    const QKeyEvent event = pressed(key, {}, {}, position);
    QTEST(keyPress(event).keyCode, "keyCode");
    QTEST(recordedHotkey(event).value_or(Hotkey{}).keyCode, "keyCode");
  }

  void ctrlIsCommandInPanelsAndControlInShortcuts() {
#ifdef Q_OS_MACOS
    QSKIP("Ctrl and Command are two keys there");
#endif
    const QKeyEvent event = pressed(Qt::Key_E, Qt::ControlModifier | Qt::AltModifier, u"\x05"_s);
    const KeyPress press = keyPress(event);
    QVERIFY(press.command && press.option && !press.control && !press.shift);
    QVERIFY(!press.isText());
    QCOMPARE(press.charactersIgnoringModifiers, u"e"_s);
    QCOMPARE(recordedHotkey(event), std::optional(Hotkey{14, carbon::kControl | carbon::kOption}));
    const QKeyEvent super = pressed(Qt::Key_E, Qt::MetaModifier | Qt::ShiftModifier, u"E"_s);
    QCOMPARE(recordedHotkey(super), std::optional(Hotkey{14, carbon::kCommand | carbon::kShift}));
  }

  void modifiersAloneAreNoShortcut() {
    QVERIFY(!recordedHotkey(pressed(Qt::Key_Control, Qt::ControlModifier, {}, 37)));
    QVERIFY(!recordedHotkey(pressed(Qt::Key_AltGr, {}, {}, 108)));
    QCOMPARE(keyPress(pressed(Qt::Key_Control, Qt::ControlModifier)).keyCode, KeyPress::kUnknownKey);
  }

  void committedTextIsText() {
    QVERIFY(textPress(u"日本"_s).isText());
    QCOMPARE(textPress(u"é"_s).keyCode, KeyPress::kUnknownKey);
    QVERIFY(!keyPress(pressed(Qt::Key_Return, {}, u"\r"_s)).isText());
  }
};

QTEST_GUILESS_MAIN(KeyEventTest)
#include "key_event_test.moc"
