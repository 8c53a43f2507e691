#include <QtTest>

#include "support/fake_platform.h"
#include "tools/keystrokes/keystroke_sender.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QString k45 = u"claude --dangerously-skip-permissions --model"_s;

}  // namespace

class KeystrokeSenderTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void aCommandGoesInChunksOfTwentyUnits() {
    QCOMPARE(k45.size(), 45);
    const KeySequence expected{TypeText{k45.mid(0, 20)}, Pause{3ms}, TypeText{k45.mid(20, 20)}, Pause{3ms},
                               TypeText{k45.mid(40)},    Pause{3ms}};
    QVERIFY(KeystrokeSender::sequence(k45, false) == expected);
  }

  void returnFollowsEightyMillisecondsLater() {
    const KeySequence expected{TypeText{u"ls"_s}, Pause{3ms}, Pause{80ms}, PressKey{36, 0}};
    QVERIFY(KeystrokeSender::sequence(u"ls"_s, true) == expected);
    QVERIFY(KeystrokeSender::sequence({}, true) == (KeySequence{Pause{80ms}, PressKey{36, 0}}));
    send({}, false);
    QVERIFY(events_.sequences.empty());
  }

  void aChordHoldsOnlyCommand() {
    KeystrokeSender(events_, permissions_).sendCommandKey(9);
    QCOMPARE(events_.sequences.size(), std::size_t{1});
    QVERIFY(events_.sequences.front() == KeySequence{(PressKey{9, 0x0100})});
  }

  void withoutPermissionTheSystemAsksAndNothingIsTyped() {
    permissions_.trusted = false;
    send(k45, true);
    KeystrokeSender(events_, permissions_).sendCommandKey(9);
    QVERIFY(events_.sequences.empty());
    QCOMPARE(permissions_.prompts, 2);
  }

  void init() {
    events_.sequences.clear();
    permissions_ = {};
  }

 private:
  void send(const QString& text, bool pressReturn) { KeystrokeSender(events_, permissions_).send(text, pressReturn); }

  FakeKeyEvents events_;
  FakePermissions permissions_;
};

QTEST_APPLESS_MAIN(KeystrokeSenderTest)
#include "test_keystroke_sender.moc"
