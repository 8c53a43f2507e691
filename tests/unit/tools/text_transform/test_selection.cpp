#include <QTest>

#include "support/fake_clock.h"
#include "support/fake_platform.h"
#include "tools/keystrokes/keystroke_sender.h"
#include "tools/text_transform/copying_selection_reader.h"
#include "tools/text_transform/typing_selection_replacer.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Outcome = SelectionReplacer::Outcome;

namespace {

PasteboardContents holding(const QByteArray& text) { return {{{u"text"_s, text}, {u"image"_s, "pixels"}}}; }

/// A program in front of which the tool stands, and the clipboard between them.
struct World {
  FakeKeyTargets targets;
  FakeSelectedText selectedText;
  FakePasteboard pasteboard;
  FakeKeyEvents events;
  FakePermissions permissions;
  FakeClock clock;
  KeystrokeSender keys{events, permissions};
  CopyingSelectionReader reader{{targets, selectedText, pasteboard, keys, clock}};
  TypingSelectionReplacer replacer{{targets, selectedText, pasteboard, keys, clock}};
  Job job = Job::start();
  std::vector<Selection> answers;
  std::vector<std::expected<Outcome, KeyEventError>> outcomes;

  World() { pasteboard.copy(holding("earlier")); }

  /// Ctrl+C in the program copies this.
  void select(const QByteArray& text) {
    events.performed = [this, text] { pasteboard.copy({{{u"text"_s, text}}}); };
  }
  void startReading() {
    reader.readSelectedText(job, [this](const Selection& selection) { answers.push_back(selection); });
  }
  void replace(const QString& result, const Selection& selection) {
    replacer.replace(selection, result, job, [this](const auto& outcome) { outcomes.push_back(outcome); });
  }
  void replace(const QString& result) { replace(result, {u"selected"_s, holding("earlier"), targets.target}); }
  /// Time passes, and whatever waits for the event loop gets its turn all the while.
  void pass(std::chrono::milliseconds duration) {
    for (auto passed = 0ms; passed < duration; passed += 10ms) {
      QCoreApplication::processEvents();
      QCoreApplication::sendPostedEvents();
      clock.advance(10ms);
    }
    QCoreApplication::processEvents();
  }
  QString typed() const {
    QString text;
    for (const KeySequence& sequence : events.sequences)
      for (const KeyStep& step : sequence)
        if (const auto* part = std::get_if<TypeText>(&step)) text += part->text;
    return text;
  }
};

}  // namespace

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
    QVERIFY(world.answers[0].previousClipboard == holding("earlier"));
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
    QCOMPARE(world.answers[0].previousClipboard.has_value(), isSeen);
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
    QVERIFY(world.answers[0].previousClipboard == holding("earlier"));
    QCOMPARE(world.pasteboard.restored.size(), 1U);
  }

  void theResultIsTypedAndTheClipboardComesBack() {
    World world;
    world.pasteboard.copy(holding("selected"));
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
    lines.replace(u"one\ntwo\n"_s, {u"1\n2\n"_s, holding("earlier"), lines.targets.target});
    lines.pass(150ms);
    QCOMPARE(lines.typed(), u"one\ntwo\n"_s);
  }

  void anotherWindowInFrontGetsNothing() {
    World world;
    const KeyTarget owner = world.targets.target;
    world.targets.target = KeyTarget::none;
    world.replace(u"result\n"_s, {u"selected"_s, holding("earlier"), owner});
    world.pass(300ms);
    // Our own panel was slow to go.
    world.targets.target = owner;
    world.pass(20ms);
    QCOMPARE(world.typed(), u"result"_s);
    world.pass(120ms);

    world.targets.target = KeyTarget{8};
    world.replace(u"result\n"_s, {u"selected"_s, holding("earlier"), owner});
    world.pass(700ms);
    QCOMPARE(world.outcomes.at(1).value(), Outcome::copied);
    QCOMPARE(world.pasteboard.texts, QStringList{u"result\n"_s});
    QCOMPARE(world.events.sequences.size(), 1U);
    world.targets.target = KeyTarget::none;
    world.replace(u"result"_s, {u"selected"_s, {}, KeyTarget::none});
    world.pass(150ms);
    QCOMPARE(world.outcomes.at(2).value(), Outcome::copied);
  }

  void aTerminalGetsALineButNotSeveral() {
    World world;
    world.selectedText.isTerminal = true;
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
    world.pasteboard.copy(holding("selected"));
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
