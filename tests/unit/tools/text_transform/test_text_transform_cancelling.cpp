#include <QTest>

#include "support/transform_world.h"
#include "tools/keystrokes/keystroke_sender.h"
#include "tools/text_transform/copying_selection_reader.h"
#include "tools/text_transform/typing_selection_replacer.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// How far a transform gets before the user thinks better of it.
enum class Stage { reading, picker, instruction, request, settling, typing, typed };

/// The tool over the real reader and replacer: only the system and the service are made up.
struct World : TransformWorld {
  FakeSelectedText selectedText;
  FakeKeyEvents events;
  KeystrokeSender keys{events, permissions};
  DisplacedClipboard displaced{{pasteboard, clock}};
  CopyingSelectionReader realReader{{targets, selectedText, pasteboard, displaced, keys, clock}};
  TypingSelectionReplacer realReplacer{{targets, selectedText, pasteboard, displaced, keys, clock}};
  std::unique_ptr<AITextTransformTool> tool;

  World() {
    pasteboard.copy(earlier);
    events.performed = [this] {
      if (events.sequences.back() == KeySequence{PressKey{8, 0x0100}}) pasteboard.copy({{{u"text"_s, "selected"}}});
    };
    useReplace();
    tool = std::make_unique<AITextTransformTool>(
        AITextTransformTool::Services{settings, transforms, realReader, realReplacer, picker, instruction, pasteboard,
                                      targets, permissions, system, toasts, preferences, launcher,
                                      [] { return QString(); }},
        SettingsViewFactory());
  }

  void pass(std::chrono::milliseconds duration) { clock.pass(duration); }

  void goTo(Stage stage) {
    tool->activate();
    pass(10ms);
    if (stage == Stage::reading) return;
    pass(100ms);
    if (stage == Stage::picker) return;
    picker.chooseRow(stage == Stage::instruction ? 4 : 0);
    pass(20ms);
    if (stage == Stage::instruction || stage == Stage::request) return;
    events.isSlow = true;
    http.answer(200, "{\"text\": \"result\"}");
    pass(stage == Stage::settling ? 60ms : 160ms);
    if (stage != Stage::typed) return;
    events.waiting({});
    pass(50ms);
  }

  /// All that the user could notice.
  QStringList seen() const {
    return {QString::number(pasteboard.changes), QString::number(events.sequences.size()),
            QString::number(toasts.shown.size())};
  }
};

}  // namespace

class TestTextTransformCancelling : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void escapeEndsItAndNothingComesLater_data() {
    QTest::addColumn<Stage>("stage");
    QTest::addRow("the picker") << Stage::picker;
    QTest::addRow("the instruction") << Stage::instruction;
  }
  void escapeEndsItAndNothingComesLater() {
    QFETCH(const Stage, stage);
    World world;
    world.goTo(stage);
    const KeyPress escape{.keyCode = keycode::kEscape};
    QVERIFY(stage == Stage::picker ? world.picker.handleKey(escape) : world.instruction.handleKey(escape));
    QVERIFY(!world.picker.isShown() && !world.instruction.isShown());
    QVERIFY(world.pasteboard.contents == world.earlier);
    expectNothingMore(world);
  }

  void aClickOnTheToastEndsItAndNothingComesLater_data() {
    QTest::addColumn<Stage>("stage");
    addToastStages();
  }
  void aClickOnTheToastEndsItAndNothingComesLater() {
    QFETCH(const Stage, stage);
    World world;
    world.goTo(stage);
    world.toasts.shown.back().first.onTap();
    QVERIFY(world.pasteboard.contents == world.earlier);
    if (stage == Stage::typing) QVERIFY(world.events.stops.back().stop_requested());
    QCOMPARE(world.toasts.dismissals, 1);
    expectNothingMore(world);
  }

  void escapeWhereTheSelectionIsEndsItToo() {
    World world;
    world.goTo(Stage::request);
    world.targets.target = KeyTarget{8};
    const auto escape = world.targets.onEscape;
    escape();
    QCOMPARE(world.toasts.dismissals, 0);
    world.targets.target = KeyTarget{7};
    escape();
    QVERIFY(world.pasteboard.contents == world.earlier);
    QCOMPARE(world.toasts.dismissals, 1);
    QVERIFY2(!world.targets.onEscape, "nobody watches any longer than needed");
    expectNothingMore(world);
  }

  void aNewStartEndsItAndBeginsAnew_data() {
    QTest::addColumn<Stage>("stage");
    addToastStages();
  }
  void aNewStartEndsItAndBeginsAnew() {
    QFETCH(const Stage, stage);
    World world;
    world.goTo(stage);
    const std::size_t toasts = world.toasts.shown.size();
    world.events.isSlow = false;
    world.tool->activate();
    if (stage == Stage::typing) {
      QVERIFY(world.events.stops.at(1).stop_requested());
      world.events.waiting(std::unexpected(KeyEventError{u"stopped"_s}));
    }
    // What the old one would have sent, typed or told comes no more.
    if (stage == Stage::request) world.http.answer(200, "{\"text\": \"result\"}");
    world.pass(100ms);
    QVERIFY(world.picker.isShown());
    world.pass(2s);
    QCOMPARE(world.toasts.shown.size(), toasts);
    QCOMPARE(world.events.sequences.back(), (KeySequence{PressKey{8, 0x0100}}));
    world.picker.cancel();
    QVERIFY(world.pasteboard.contents == world.earlier);
    expectNothingMore(world);
  }

  void aNewStartWhileItReadsIsOneStart() {
    World world;
    world.goTo(Stage::reading);
    world.tool->activate();
    world.pass(2s);
    QCOMPARE(world.events.sequences.size(), 1U);
    QVERIFY(world.picker.isShown());
    world.picker.cancel();
    QVERIFY(world.pasteboard.contents == world.earlier);
    expectNothingMore(world);
  }

  void theEndOfTheProgramEndsItWhereverItIs_data() {
    QTest::addColumn<Stage>("stage");
    QTest::addRow("reading") << Stage::reading;
    QTest::addRow("asking") << Stage::instruction;
    addToastStages();
  }
  void theEndOfTheProgramEndsItWhereverItIs() {
    QFETCH(const Stage, stage);
    World world;
    world.goTo(stage);
    world.tool->abandon();
    if (stage == Stage::typing) world.events.waiting(std::unexpected(KeyEventError{u"stopped"_s}));
    world.pass(stage == Stage::reading ? 100ms : 0ms);
    QVERIFY(world.pasteboard.contents == world.earlier);
    QVERIFY(!world.picker.isShown());
    expectNothingMore(world);
  }

 private:
  static void addToastStages() {
    QTest::addRow("waiting for the answer") << Stage::request;
    QTest::addRow("before the result is typed") << Stage::settling;
    QTest::addRow("while it is typed") << Stage::typing;
    QTest::addRow("after that") << Stage::typed;
  }

  static void expectNothingMore(World& world) {
    if (!world.http.sent.empty()) world.http.answer(200, "{\"text\": \"too late\"}");
    const QStringList before = world.seen();
    world.pass(3s);
    QCOMPARE(world.seen(), before);
  }
};

QTEST_GUILESS_MAIN(TestTextTransformCancelling)
#include "test_text_transform_cancelling.moc"
