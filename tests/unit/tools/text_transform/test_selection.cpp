#include <QTest>

#include "support/selection_world.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Outcome = SelectionReplacer::Outcome;
using World = SelectionWorld;

class SelectionTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void aCopyIsReadAndTheClipboardBeforeItKept() {
    World world;
    // Equal to what was copied before: only the count tells.
    world.select("earlier");
    world.startReading();
    world.pass(100ms);
    QCOMPARE(world.answers.size(), 1U);
    QCOMPARE(world.answers[0].text, u"earlier"_s);
    QVERIFY(*world.answers[0].previousClipboard == holding("earlier"));
    QCOMPARE(world.answers[0].owner, KeyTarget{7});
    QCOMPARE(world.events.sequences, std::vector<KeySequence>({{PressKey{8, 0x0100}}}));
  }

  void theLastLookIsAtHalfASecond_data() {
    QTest::addColumn<int>("delay");
    QTest::addColumn<bool>("isSeen");
    QTest::addRow("just in time") << 490 << true;
    QTest::addRow("too late") << 510 << false;
  }
  void theLastLookIsAtHalfASecond() {
    QFETCH(const int, delay);
    QFETCH(const bool, isSeen);
    World world;
    world.events.performed = [&world, delay] {
      world.clock.after(std::chrono::milliseconds(delay), world.job,
                        [&world] { world.pasteboard.copy(holding("late")); });
    };
    world.startReading();
    world.pass(600ms);
    QCOMPARE(world.answers.size(), 1U);
    QCOMPARE(world.answers[0].text.has_value(), isSeen);
    QCOMPARE(world.answers[0].previousClipboard != nullptr, isSeen);
  }

  void aCopyWithoutTextIsPutBackByTheCaller() {
    World world;
    world.events.performed = [&world] { world.pasteboard.copy({{{u"image"_s, "a picture"}}}); };
    world.startReading();
    world.pass(100ms);
    QVERIFY(!world.answers.at(0).text);
    world.replacer.restore(world.answers[0]);
    QVERIFY(world.pasteboard.contents == holding("earlier"));
  }

  void whatIsHandedOverTouchesNothing() {
    World world;
    world.selectedText.text = u"marked"_s;
    world.startReading();
    world.pass(600ms);
    QCOMPARE(world.answers.at(0).text, u"marked"_s);
    QVERIFY(!world.answers[0].previousClipboard);
    world.replacer.restore(world.answers[0]);
    QVERIFY(world.events.sequences.empty() && world.pasteboard.restored.empty());
  }

  void aTerminalGetsNoKey() {
    World world;
    world.selectedText.isTerminal = true;
    world.startReading();
    world.pass(600ms);
    QCOMPARE(world.answers.size(), 1U);
    QVERIFY(!world.answers[0].text);
    QVERIFY(world.events.sequences.empty());
  }

  void keysThatCannotBePressedAreNoSelection() {
    World world;
    world.events.result = std::unexpected(KeyEventError{u"held"_s});
    world.startReading();
    world.pass(100ms);
    QVERIFY(!world.answers.at(0).text && !world.answers[0].previousClipboard);
    QCOMPARE(world.answers[0].obstacle, u"held"_s);
    world.permissions.trusted = false;
    world.startReading();
    world.pass(100ms);
    QCOMPARE(world.answers.size(), 2U);
  }

  void aReadingThatIsCancelledInTimePressesNoKey() {
    World world;
    world.startReading();
    world.job.cancel();
    world.pass(600ms);
    QVERIFY(world.events.sequences.empty());
    QVERIFY(world.answers.empty());
  }

  void aCancelledReadingLeavesTheEarlierClipboard() {
    World world;
    world.events.performed = [&world] { world.job.cancel(); };
    world.startReading();
    world.pass(100ms);
    world.pasteboard.copy({{{u"text"_s, "copied after all"}}});
    world.pass(600ms);
    QVERIFY(world.answers.empty());
    QVERIFY(world.pasteboard.contents == holding("earlier"));
  }

  void twoReadingsDoNotTakeEachOthersCopy() {
    World world;
    world.select("selected");
    world.startReading();
    world.pass(10ms);
    world.job = Job::start();
    world.startReading();
    world.pass(600ms);
    QCOMPARE(world.answers.size(), 1U);
    QVERIFY(*world.answers[0].previousClipboard == holding("earlier"));
    QCOMPARE(world.pasteboard.restored.size(), 1U);
  }

  void theResultIsTypedAndTheClipboardComesBack() {
    World world;
    world.replace(u"a longer\n\tresult 🚀"_s);
    world.pass(130ms);
    QVERIFY(world.events.sequences.empty());
    world.pass(10ms);
    QCOMPARE(world.typed(), u"a longer\n\tresult 🚀"_s);
    world.pass(110ms);
    QVERIFY(world.pasteboard.restored.empty() && world.outcomes.empty());
    world.pass(20ms);
    QVERIFY(world.pasteboard.contents == holding("earlier"));
    QCOMPARE(world.outcomes.at(0).value(), Outcome::typed);
  }

  void aReturnAtTheEndIsTypedOnlyWhereOneWasSelected() {
    World world;
    world.replace(u"send me\r\n"_s);
    world.pass(150ms);
    QCOMPARE(world.typed(), u"send me"_s);
    World lines;
    lines.replace(u"one\ntwo\n"_s, lines.copied(u"1\n2\n"_s));
    lines.pass(150ms);
    QCOMPARE(lines.typed(), u"one\ntwo\n"_s);
  }

  void anotherWindowInFrontGetsNothing() {
    World world;
    const KeyTarget owner = world.targets.target;
    world.targets.target = KeyTarget::none;
    world.replace(u"result\n"_s);
    world.pass(300ms);
    // Our own panel was slow to go.
    world.targets.target = owner;
    world.pass(20ms);
    QCOMPARE(world.typed(), u"result"_s);
    world.pass(120ms);

    world.targets.target = KeyTarget{8};
    world.replace(u"result\n"_s);
    world.pass(700ms);
    QCOMPARE(world.outcomes.at(1).value(), Outcome::copied);
    QCOMPARE(world.pasteboard.texts, QStringList{u"result\n"_s});
    QCOMPARE(world.events.sequences.size(), 1U);
    world.targets.target = KeyTarget::none;
    world.replace(u"result"_s, {u"selected"_s, {}, KeyTarget::none});
    world.pass(150ms);
    QCOMPARE(world.outcomes.at(2).value(), Outcome::copied);
  }

  void aTerminalGetsALineButNotSeveral_data() {
    QTest::addColumn<bool>("copiesInTerminals");
    QTest::newRow("where the copy shortcut interrupts") << false;
    QTest::newRow("where it copies") << true;
  }
  void aTerminalGetsALineButNotSeveral() {
    QFETCH(const bool, copiesInTerminals);
    World world;
    world.selectedText.isTerminal = true;
    world.selectedText.copiesInTerminals = copiesInTerminals;
    world.replace(u"rm -rf x\necho done"_s);
    world.pass(150ms);
    QCOMPARE(world.outcomes.at(0).value(), Outcome::copied);
    QCOMPARE(world.typed(), u""_s);
    world.replace(u"one line\n"_s);
    world.pass(300ms);
    QCOMPARE(world.outcomes.at(1).value(), Outcome::typed);
    QCOMPARE(world.typed(), u"one line"_s);
  }

  void whatCannotBeTypedIsAnError() {
    World world;
    world.events.result = std::unexpected(KeyEventError{u"held"_s});
    world.replace(u"result"_s);
    world.pass(300ms);
    QCOMPARE(world.outcomes.at(0).error().description(), u"held"_s);
  }

  void typingStopsInTheMiddle() {
    World world;
    world.events.isSlow = true;
    world.replace(u"result"_s);
    world.pass(150ms);
    QVERIFY(!world.events.stops.at(0).stop_requested());
    world.job.cancel();
    QVERIFY(world.events.stops[0].stop_requested());
    world.events.waiting(std::unexpected(KeyEventError{u"stopped"_s}));
    QVERIFY(world.pasteboard.contents == holding("earlier"));
    world.pass(300ms);
    QVERIFY(world.outcomes.empty());
  }

  void aCancelledReplacementLeavesTheEarlierClipboard_data() {
    QTest::addColumn<int>("after");
    QTest::addColumn<QString>("typed");
    QTest::addRow("before it is typed") << 100 << u""_s;
    QTest::addRow("after") << 200 << u"result"_s;
  }
  void aCancelledReplacementLeavesTheEarlierClipboard() {
    QFETCH(const int, after);
    QFETCH(const QString, typed);
    World world;
    world.replace(u"result"_s);
    world.pass(std::chrono::milliseconds(after));
    world.job.cancel();
    world.pass(300ms);
    QCOMPARE(world.typed(), typed);
    QVERIFY(world.outcomes.empty());
    QVERIFY(world.pasteboard.contents == holding("earlier"));
  }
};

QTEST_GUILESS_MAIN(SelectionTest)
#include "test_selection.moc"
