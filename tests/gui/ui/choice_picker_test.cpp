#include <QAccessible>
#include <QTest>

#include "core/picker/choice_picker_controller.h"
#include "core/ui/choice_picker_window.h"
#include "core/ui/palette_list.h"
#include "support/fake_panel_window.h"
#include "support/fake_presenters.h"
#include "support/wear_theme.h"

using namespace Qt::StringLiterals;

namespace {

const std::vector<Choice> kPlain = {{u"sparkles"_s, u"First"_s}, {u"globe"_s, u"Second"_s}, {u"clock"_s, u"Third"_s}};
const std::vector<Choice> kDescribed = {{u"macwindow.on.rectangle"_s, u"A window"_s, u"What it looks like."_s},
                                        {u"photo"_s, u"A picture"_s, u"Everything that is to be seen on it."_s}};

/// A picker on the screen; it opens at once.
struct Stage {
  explicit Stage(const std::vector<Choice>& choices, QSize size = {556, 384})
      : controller(choices, launcher, u"some-tool"_s, [this, size] {
          auto made = std::make_unique<ChoicePickerWindow>(
              native, controller, ChoicePickerView::Texts{u"Some Tool"_s, u"textformat.abc"_s, u"Which one?"_s}, size);
          window = made.get();
          return made;
        }) {
    open();
  }
  void open() {
    controller.choose([this](std::optional<int> row) { outcome = row.value_or(-1); });
  }
  PalettePanel& panel() { return window->panel(); }
  PaletteList& list() { return *panel().findChild<PaletteList*>(); }
  void key(Qt::Key key) { QTest::keyClick(panel().windowHandle(), key); }

  FakePanelWindow native;
  FakeLauncherOpener launcher;
  ChoicePickerWindow* window = nullptr;
  ChoicePickerController controller;
  std::optional<int> outcome;
};

}  // namespace

class TestChoicePickerWindow : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { wearTheme(); }

  void itsKeysMoveAndChoose() {
    Stage stage(kPlain);
    QCOMPARE(stage.panel().size(), QSize(556, 384));
    QCOMPARE(stage.panel().windowTitle(), u"Some Tool"_s);
    stage.key(Qt::Key_Up);
    QCOMPARE(stage.list().currentIndex().row(), 2);
    stage.key(Qt::Key_Return);
    QCOMPARE(stage.outcome, std::optional(2));
    QVERIFY(!stage.panel().isVisible());
    stage.open();
    QCOMPARE(stage.list().currentIndex().row(), 0);
    stage.key(Qt::Key_2);
    QCOMPARE(stage.outcome, std::optional(1));
  }

  void aClickChoosesAndOneElsewhereCancels() {
    Stage stage(kDescribed, {556, 336});
    const QRect second = stage.list().visualRect(stage.list().model()->index(1, 0));
    QCOMPARE(second.height(), 56);
    QTest::mouseClick(stage.list().viewport(), Qt::LeftButton, {}, second.center());
    QCOMPARE(stage.outcome, std::optional(1));
    stage.open();
    stage.native.loseKeyboard();
    QCOMPARE(stage.outcome, std::optional(-1));
    QVERIFY(!stage.panel().isVisible());
  }

  void aScreenReaderReadsAndPressesTheRows() {
    Stage stage(kDescribed, {556, 336});
    QAccessibleInterface* list = QAccessible::queryAccessibleInterface(&stage.list());
    QCOMPARE(list->text(QAccessible::Name), u"Which one?"_s);
    QCOMPARE(list->childCount(), 2);
    QAccessibleInterface* row = list->child(1);
    QCOMPARE(row->text(QAccessible::Name), u"A picture"_s);
    QCOMPARE(row->text(QAccessible::Description), u"Everything that is to be seen on it."_s);
    QVERIFY(list->child(0)->state().selected && !row->state().selected);
    row->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(stage.outcome, std::optional(1));
  }
};

QTEST_MAIN(TestChoicePickerWindow)
#include "choice_picker_test.moc"
