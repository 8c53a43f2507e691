#include <QClipboard>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>

#include "support/clipping.h"
#include "support/controls.h"
#include "support/fake_panel_window.h"
#include "support/wear_theme.h"
#include "tools/text_transform/custom_instruction_controller.h"
#include "tools/text_transform/custom_instruction_panel.h"

using namespace Qt::StringLiterals;

namespace {

/// The panel on the screen, with the keyboard.
struct Stage {
  Stage() {
    ask();
    activate();
  }
  void ask() {
    outcome.reset();
    controller.ask([this](const std::optional<QString>& instruction) { outcome = instruction.value_or(u"none"_s); });
  }
  /// Without a window manager that is not to be had for a window that was hidden before.
  void activate() {
    panel().activateWindow();
    if (!QTest::qWaitForWindowActive(&panel())) qFatal("the panel is not active");
  }
  PalettePanel& panel() { return window->panel(); }
  QPlainTextEdit& text() { return *panel().findChild<QPlainTextEdit*>(); }
  /// As the user would: whatever has the keyboard gets it.
  void key(Qt::Key key, Qt::KeyboardModifiers held = {}) { QTest::keyClick(panel().windowHandle(), key, held); }

  FakePanelWindow native;
  CustomInstructionPanel* window = nullptr;
  CustomInstructionController controller{[this] {
    auto made = std::make_unique<CustomInstructionPanel>(native, controller);
    window = made.get();
    return made;
  }};
  std::optional<QString> outcome;
};

}  // namespace

class TestCustomInstructionPanel : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { wearTheme(); }

  void oneTypesAtOnceAndCommandReturnTransforms() {
    Stage stage;
    QCOMPARE(stage.panel().size(), QSize(576, 316));
    QCOMPARE(stage.text().placeholderText(), u"Describe what to do with the selected text."_s);
    QVERIFY(stage.text().hasFocus());
    QCOMPARE(unnamedControls(stage.panel()), QStringList());
    QCOMPARE(clippedTexts(stage.panel()), QStringList());
    for (const QChar letter : u"as a pirate"_s) QTest::keyClick(stage.panel().windowHandle(), letter.toLatin1());
    stage.key(Qt::Key_Return);
    stage.key(Qt::Key_X);
    QCOMPARE(stage.controller.model().text(), u"as a pirate\nx"_s);
    stage.key(Qt::Key_Return, Qt::ControlModifier);
    QCOMPARE(stage.outcome, std::optional(u"as a pirate\nx"_s));
    QVERIFY(!stage.panel().isVisible());

    stage.ask();
    QVERIFY(stage.text().toPlainText().isEmpty() && stage.panel().focusWidget() == &stage.text());
    stage.key(Qt::Key_Escape);
    QCOMPARE(stage.outcome, std::optional(u"none"_s));
  }

  void tabLeadsToTheButtonsAndBack() {
    Stage stage;
    stage.controller.model().setText(u"shorter"_s);
    QCOMPARE(stage.text().toPlainText(), u"shorter"_s);
    stage.key(Qt::Key_Tab);
    auto* cancel = named<QPushButton>(stage.panel(), u"Cancel"_s);
    auto* transform = named<QPushButton>(stage.panel(), u"Transform"_s);
    QVERIFY(cancel->hasFocus());
    stage.key(Qt::Key_Tab);
    QVERIFY(transform->hasFocus());
    stage.key(Qt::Key_Tab);
    QVERIFY(stage.text().hasFocus());
    stage.key(Qt::Key_Backtab, Qt::ShiftModifier);
    QVERIFY(transform->hasFocus());
    stage.key(Qt::Key_Space);
    QCOMPARE(stage.outcome, std::optional(u"shorter"_s));
    stage.ask();
    QCOMPARE(stage.panel().focusWidget(), &stage.text());
    cancel->click();
    QCOMPARE(stage.outcome, std::optional(u"none"_s));
  }

  void aClickElsewhereCancels() {
    Stage stage;
    stage.controller.model().setText(u"shorter"_s);
    stage.native.loseKeyboard();
    QCOMPARE(stage.outcome, std::optional(u"none"_s));
    QVERIFY(!stage.panel().isVisible());
  }

  void whatIsPastedIsPlainText() {
    Stage stage;
    QGuiApplication::clipboard()->setText(u"two\nlines"_s);
    stage.key(Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(stage.controller.model().text(), u"two\nlines"_s);
  }
};

QTEST_MAIN(TestCustomInstructionPanel)
#include "test_custom_instruction_panel.moc"
