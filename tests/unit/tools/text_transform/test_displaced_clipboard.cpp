#include <QTest>

#include "support/selection_world.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Outcome = SelectionReplacer::Outcome;
using World = SelectionWorld;

class DisplacedClipboardTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void whatTheUserCopiesMeanwhileStays() {
    World world;
    world.select("selected");
    world.startReading();
    world.pass(100ms);
    // A clipboard manager takes the copy over: that is nobody's new copy.
    world.pasteboard.copy(holding("selected"));
    world.replacer.restore(world.answers.at(0));
    world.pass(20ms);
    QVERIFY(world.pasteboard.contents == holding("earlier"));

    world.startReading();
    world.pass(100ms);
    world.events.performed = nullptr;
    world.pasteboard.copy(holding("the user's"));
    world.replace(u"result"_s, world.answers.at(1));
    world.pass(300ms);
    QCOMPARE(world.outcomes.at(0).value(), Outcome::typed);
    QVERIFY(world.pasteboard.contents == holding("the user's"));
  }

  /// The shortcut again while it is still looked into whose the clipboard is, or when nobody has put it back.
  void aReadingNeverTakesACopyForTheUsersClipboard_data() {
    QTest::addColumn<bool>("isRestored");
    QTest::addColumn<bool>("isTakenOver");
    QTest::addRow("right after it is put back") << true << true;
    QTest::addRow("before") << false << true;
    QTest::addRow("with the copy as it was") << false << false;
  }
  void aReadingNeverTakesACopyForTheUsersClipboard() {
    QFETCH(const bool, isRestored);
    QFETCH(const bool, isTakenOver);
    World world;
    world.select("selected");
    world.startReading();
    world.pass(100ms);
    // A clipboard manager's.
    if (isTakenOver) world.pasteboard.copy({{{u"text"_s, "selected"}}});
    if (isRestored) world.replacer.restore(world.answers.at(0));
    world.startReading();
    world.pass(100ms);
    QCOMPARE(world.answers.at(1).text, u"selected"_s);
    QVERIFY(*world.answers[1].previousClipboard == holding("earlier"));
    world.replacer.restore(world.answers[0]);
    QVERIFY(world.pasteboard.contents != holding("earlier"));
    world.replacer.restore(world.answers[1]);
    QVERIFY(world.pasteboard.contents == holding("earlier"));
  }

  void aCopyThatIsLeftOverIsPutBackAlsoWhenNothingIsCopied() {
    World world;
    world.select("selected");
    world.startReading();
    world.pass(100ms);
    world.events.performed = nullptr;
    world.startReading();
    world.pass(600ms);
    QVERIFY(!world.answers.at(1).text);
    world.replacer.restore(world.answers[1]);
    QVERIFY(world.pasteboard.contents == holding("earlier"));
    // That was no late copy.
    world.pasteboard.copy(holding("the user's"), KeyTarget{8});
    world.pass(100ms);
    QVERIFY(world.pasteboard.contents == holding("the user's"));
  }

  void whatIsCopiedInTheMeantimeIsTheUsersClipboard() {
    World world;
    world.select("selected");
    world.startReading();
    world.pass(100ms);
    world.pasteboard.copy(holding("the user's"));
    world.startReading();
    world.pass(100ms);
    QVERIFY(*world.answers.at(1).previousClipboard == holding("the user's"));
  }

  void aLateCopyIsUndone_data() {
    QTest::addColumn<int>("delay");
    QTest::addColumn<int>("program");
    QTest::addColumn<int>("touch");
    QTest::addColumn<bool>("isUndone");
    constexpr int kNone = 0;
    QTest::addRow("a little late") << 520 << 7 << kNone << true;
    QTest::addRow("very late") << 10'400 << 7 << kNone << true;
    QTest::addRow("too late") << 10'700 << 7 << kNone << false;
    QTest::addRow("another program's") << 700 << 8 << kNone << false;
    QTest::addRow("maybe the user's") << 700 << 7 << 40 << false;
    QTest::addRow("before the user has done anything") << 700 << 7 << 60 << true;
  }
  void aLateCopyIsUndone() {
    QFETCH(const int, delay);
    QFETCH(const int, program);
    QFETCH(const int, touch);
    QFETCH(const bool, isUndone);
    World world;
    if (touch > 0) world.targets.touch = InputTime(touch);
    const auto comes = [&] { world.pasteboard.copy(holding("late"), static_cast<KeyTarget>(program), InputTime{50}); };
    world.events.performed = [&] { world.clock.after(std::chrono::milliseconds(delay), world.job, comes); };
    world.startReading();
    world.pass(600ms);
    QVERIFY(!world.answers.at(0).text && !world.answers[0].previousClipboard);
    world.pass(11s);
    QVERIFY(world.pasteboard.contents == holding(isUndone ? "earlier" : "late"));
    // Some programs copy twice; the user's next copy is another matter.
    world.pasteboard.copy(holding("next"), KeyTarget{8});
    world.pass(200ms);
    QVERIFY(world.pasteboard.contents == holding("next"));
  }

  void aSecondLateCopyIsUndoneToo() {
    World world;
    world.startReading();
    world.pass(600ms);
    for (int time = 0; time < 2; ++time) {
      world.pasteboard.copy(holding("late"), KeyTarget{7});
      world.pass(60ms);
      QVERIFY(world.pasteboard.contents == holding("earlier"));
    }
    // The user's own, in the same program.
    world.targets.touch = InputTime{60};
    world.pasteboard.copy(holding("late"), KeyTarget{7}, InputTime{50});
    world.pasteboard.copy(holding("the user's"), KeyTarget{7}, InputTime{70});
    world.pass(60ms);
    QVERIFY(world.pasteboard.contents == holding("the user's"));
  }

  void whatComesAfterAnotherCopyIsNotUndone() {
    World world;
    world.startReading();
    world.pass(600ms);
    world.pasteboard.copy(holding("the user's"), KeyTarget{8});
    world.pass(60ms);
    world.pasteboard.copy(holding("late"), KeyTarget{7});
    world.pass(60ms);
    QVERIFY(world.pasteboard.contents == holding("late"));
  }

  void whatIsAskedForTwiceMayComeAtLast_data() {
    QTest::addColumn<int>("when");
    QTest::addRow("after the second time") << +1;
    QTest::addRow("with it") << 0;
    QTest::addRow("just before") << -1;
  }
  void whatIsAskedForTwiceMayComeAtLast() {
    QFETCH(const int, when);
    World world;
    world.startReading();
    world.pass(700ms);
    if (when < 0) world.pasteboard.copy(holding("late"), KeyTarget{7});
    world.startReading();
    const auto copy = [&world] { world.pasteboard.copy({{{u"text"_s, "selected"}}}, KeyTarget{7}); };
    if (when == 0) JobRef(world.job).later(copy);
    world.pass(40ms);
    if (when != 0) copy();
    world.pass(100ms);
    QCOMPARE(world.answers.at(1).text, u"selected"_s);
    world.replacer.restore(world.answers[1]);
    QVERIFY(world.pasteboard.contents == holding("earlier"));
  }

  void theEndInTheMiddleOfAReadingUndoesItsCopy() {
    World world;
    {
      CopyingSelectionReader reader(
          {world.targets, world.selectedText, world.pasteboard, world.displaced, world.keys, world.clock});
      world.select("selected");
      reader.readSelectedText(world.job, [](const Selection&) {});
      world.pass(10ms);
      QVERIFY(world.pasteboard.contents != holding("earlier"));
    }
    QVERIFY(world.pasteboard.contents == holding("earlier"));
    {
      CopyingSelectionReader reader(
          {world.targets, world.selectedText, world.pasteboard, world.displaced, world.keys, world.clock});
      world.events.performed = nullptr;
      reader.readSelectedText(world.job, [](const Selection&) {});
      world.pass(10ms);
    }
    // Nothing was copied.
    QCOMPARE(world.pasteboard.restored.size(), 1U);
  }
};

QTEST_GUILESS_MAIN(DisplacedClipboardTest)
#include "test_displaced_clipboard.moc"
