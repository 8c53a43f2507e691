#include <QtTest>

#include "support/fake_platform.h"
#include "tools/keystrokes/keystroke_sender.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QString k45 = u"claude --dangerously-skip-permissions --model"_s;

/// Answers the questions about permission in turn, the last answer for good.
class AnsweringPermissions final : public Permissions {
 public:
  explicit AnsweringPermissions(std::vector<bool> answers) : answers_(std::move(answers)) {}
  bool isAccessibilityTrusted() const override { return answers_[std::min(asked_++, answers_.size() - 1)]; }
  void promptForAccessibility() override { ++prompts; }
  int prompts = 0;

 private:
  std::vector<bool> answers_;
  mutable std::size_t asked_ = 0;
};

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
  }

  void anEmptyTextIsOnlyTheReturn() {
    QVERIFY(KeystrokeSender::sequence({}, true) == (KeySequence{Pause{80ms}, PressKey{36, 0}}));
    send({}, false);
    QVERIFY(events_.sequences.empty());
  }

  void aPairCutByAChunkIsWholeInTheSequence() {
    const QString text = QString(19, u'x') + u"🙂"_s;
    QString joined;
    for (const KeyStep& step : KeystrokeSender::sequence(text, false))
      if (const auto* typed = std::get_if<TypeText>(&step)) joined += typed->text;
    QCOMPARE(joined, text);
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

  void aPermissionGrantedMeanwhileNeitherAsksNorTypes() {
    AnsweringPermissions granted({false, true});
    KeystrokeSender(events_, granted).send(k45, false);
    QVERIFY(events_.sequences.empty());
    QCOMPARE(granted.prompts, 0);
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
