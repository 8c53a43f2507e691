#include <QAbstractItemModelTester>
#include <QTest>

#include "core/picker/choice_picker_controller.h"
#include "support/fake_palette.h"
#include "support/fake_presenters.h"

using namespace Qt::StringLiterals;

namespace {

constexpr std::uint32_t kTwoKey = 19;

KeyPress digit(QChar character) { return {.keyCode = kTwoKey, .characters = QString(character)}; }

struct Picker {
  /// Counts openings and closings, and keeps whether it is open.
  struct Panel final : PalettePresenter {
    explicit Panel(Picker& owner) : picker(owner) {}
    void present() override { ++picker.openings; }
    void warmUp() override { ++picker.warmUps; }
    void dismiss() override { ++picker.closings; }
    Picker& picker;
  };

  /// Opens it; what it ends with is added to `outcomes`, "none" for a cancel.
  void open() {
    controller.choose([this](std::optional<int> row) {
      outcomes.append(row ? QString::number(*row) : u"none"_s);
      wasOpenAtOutcome = openings != closings;
    });
  }
  bool press(std::uint32_t keyCode) { return controller.handleKey(code(keyCode)); }

  int openings = 0;
  int closings = 0;
  int warmUps = 0;
  QStringList outcomes;
  bool wasOpenAtOutcome = false;
  FakeLauncherOpener launcher;
  ChoicePickerController controller{{{u"a"_s, u"One"_s}, {u"b"_s, u"Two"_s, u"The second"_s}, {u"c"_s, u"Three"_s}},
                                    launcher,
                                    u"some-tool"_s,
                                    [this] { return std::make_unique<Panel>(*this); }};
};

}  // namespace

class TestChoicePicker : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void theArrowsGoRoundAndReturnChooses() {
    Picker picker;
    QAbstractItemModelTester tester(&picker.controller.model(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    picker.open();
    QVERIFY(picker.press(keycode::kUp));
    QCOMPARE(picker.controller.model().selectionIndex(), 2);
    QVERIFY(picker.press(keycode::kDown));
    QCOMPARE(picker.controller.model().selectionIndex(), 0);
    QVERIFY(picker.press(keycode::kDown));
    QVERIFY(picker.press(keycode::kReturn));
    QCOMPARE(picker.outcomes, QStringList(u"1"_s));
    QVERIFY(!picker.wasOpenAtOutcome);

    picker.open();
    QCOMPARE(picker.controller.model().selectionIndex(), 0);
    QVERIFY(picker.press(keycode::kKeypadEnter));
    QCOMPARE(picker.outcomes, (QStringList{u"1"_s, u"0"_s}));
    QCOMPARE(picker.openings, 2);
    QCOMPARE(picker.closings, 2);
  }

  void everyOpeningEndsOnce() {
    Picker picker;
    picker.open();
    picker.open();
    QCOMPARE(picker.openings, 1);
    picker.controller.cancel();
    picker.controller.cancel();
    picker.controller.chooseRow(1);
    QVERIFY(!picker.press(keycode::kReturn));
    QVERIFY(!picker.press(keycode::kEscape));
    QCOMPARE(picker.outcomes, QStringList(u"none"_s));
    QCOMPARE(picker.closings, 1);
  }

  void aCompletionMayOpenItAgain() {
    Picker picker;
    picker.controller.choose([&picker](auto) { picker.open(); });
    QVERIFY(picker.press(keycode::kReturn));
    QVERIFY(picker.controller.isShown());
    QVERIFY(picker.press(keycode::kEscape));
    QCOMPARE(picker.outcomes, QStringList(u"none"_s));
  }

  void escapeLeadsBackToTheLauncherOnlyFromThere() {
    Picker picker;
    picker.open();
    QVERIFY(picker.press(keycode::kEscape));
    QVERIFY(picker.launcher.shown.isEmpty());
    picker.controller.setReturnsToLauncher(true);
    picker.open();
    QVERIFY(picker.press(keycode::kEscape));
    QCOMPARE(picker.launcher.shown, QStringList(u"some-tool"_s));
    // A click elsewhere is no way back.
    picker.open();
    picker.controller.cancel();
    QCOMPARE(picker.launcher.shown.size(), 1);
    QCOMPARE(picker.outcomes, (QStringList{u"none"_s, u"none"_s, u"none"_s}));
  }

  void digitsChooseAndOtherKeysPass() {
    Picker picker;
    picker.open();
    QVERIFY(!picker.controller.handleKey(digit(u'4')));
    QVERIFY(!picker.controller.handleKey(digit(u'0')));
    QVERIFY(!picker.controller.handleKey(letter(u'x')));
    QVERIFY(!picker.controller.handleKey({.keyCode = kTwoKey, .command = true, .characters = u"2"_s}));
    picker.controller.chooseRow(7);
    QVERIFY(picker.outcomes.isEmpty());
    QVERIFY(picker.controller.handleKey(digit(u'2')));
    QCOMPARE(picker.outcomes, QStringList(u"1"_s));
  }

  void aPanelMadeAheadIsKept() {
    Picker picker;
    picker.controller.prepare();
    picker.controller.prepare();
    QCOMPARE(picker.warmUps, 1);
    picker.open();
    QCOMPARE(picker.openings, 1);
  }
};

QTEST_GUILESS_MAIN(TestChoicePicker)
#include "test_choice_picker.moc"
