#include <QtTest>

#include "platform/command_key.h"

using namespace Qt::StringLiterals;

class CommandKeyTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void combinationsReadAsTheyArePressed() {
    const QString text = u"⌘N starts over (⇧⌘S saves), ⌘←↑↓→ carry it, ⇧⇥ goes back"_s;
    QCOMPARE(keyText(text, KeyboardKind::mac), text);
    QCOMPARE(keyText(text, KeyboardKind::pc),
             u"Ctrl+N starts over (Ctrl+Shift+S saves), Ctrl+←↑↓→ carry it, ⇧⇥ goes back"_s);
  }

  void capsAreThoseOfTheKeyboard() {
    const QStringList caps{u"⇧"_s, u"⌘"_s, u"S"_s};
    QCOMPARE(keyCaps(caps, KeyboardKind::mac), caps);
    QCOMPARE(keyCaps(caps, KeyboardKind::pc), (QStringList{u"Ctrl"_s, u"Shift"_s, u"S"_s}));
    QCOMPARE(keyCaps({u"⌘←→"_s}, KeyboardKind::pc), QStringList{u"Ctrl+←→"_s});
    QCOMPARE(keyCaps({u"⇧"_s, u"⇥"_s}, KeyboardKind::pc), (QStringList{u"⇧"_s, u"⇥"_s}));
    QCOMPARE(keyCaps({}, KeyboardKind::pc), QStringList());
  }
};

QTEST_APPLESS_MAIN(CommandKeyTest)
#include "test_command_key.moc"
