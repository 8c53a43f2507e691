#include "app/menu/menu_window.h"

#include <QAccessible>
#include <QScreen>
#include <QTest>

#include "core/ui/search_field.h"
#include "menu_stage.h"
#include "support/fake_panel_window.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Outlives the panel, which gives its keyboard back when it goes.
struct FakeNative {
  FakePanelWindow fakeNative;
};

/// The menu over a fake native side, shown at an icon in the top right corner.
struct ShownMenu : FakeNative, MenuStage {
  ShownMenu() : MenuStage(fakeNative) {
    icon = QRect(700, 0, 24, 24);
    controller.show();
  }
  QString selected() { return controller.model().selectedRow()->title; }
};

}  // namespace

class MenuWindowTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void standsUnderTheIconAndShrinksToItsRows() {
    ShownMenu menu;
    const QRect full = menu.card();
    QVERIFY(full.top() > menu.icon.bottom());
    QVERIFY(full.top() < menu.icon.bottom() + 16);
    QVERIFY(menu.panel().screen()->availableGeometry().contains(full));
    QTest::keyClicks(&menu.panel(), u"url"_s);
    const QRect filtered = menu.card();
    QCOMPARE(filtered.topLeft(), full.topLeft());
    QVERIFY(filtered.height() < full.height() / 3);
    QCOMPARE(menu.fakeNative.watchedCard.size(), filtered.size());
    QTest::keyClick(&menu.panel(), Qt::Key_Escape);
    QCOMPARE(menu.card(), full);
  }

  void scrollsOnALowScreen() {
    ShownMenu menu;
    const QRect screen = menu.panel().screen()->availableGeometry();
    menu.controller.hide();
    menu.icon = QRect(700, screen.height() - 300, 24, 24);
    menu.controller.show();
    QVERIFY(menu.card().height() < menu.panel().findChild<MenuView*>()->wantedSize().height());
    QTest::keyClick(&menu.panel(), Qt::Key_End);
    QCOMPARE(menu.selected(), u"Quit Vantle"_s);
    QVERIFY(menu.list().viewport()->rect().contains(menu.middleOf(menu.controller.model().selection())));
  }

  void commandKeysReachTheApplicationsEntries() {
    ShownMenu menu;
    QTest::keyClick(&menu.panel(), Qt::Key_Comma, Qt::ControlModifier);
    QCOMPARE(menu.windows.opened, std::vector{AppWindow::settings});
    QVERIFY(!menu.panel().isVisible());
  }

  void thePointerSelectsAndAClickStarts() {
    ShownMenu menu;
    QWidget* rows = menu.list().viewport();
    QTest::mouseMove(rows, menu.middleOf(3));
    QCOMPARE(menu.selected(), u"Ask AI"_s);
    // At rest it leaves the selection to the keys, and a separator cannot be had.
    QTest::keyClick(&menu.panel(), Qt::Key_Down);
    QTest::mouseMove(rows, menu.middleOf(3));
    QCOMPARE(menu.selected(), u"File Drop"_s);
    QTest::mouseMove(rows, menu.middleOf(14));
    QTest::mouseClick(rows, Qt::LeftButton, {}, menu.middleOf(14));
    QCOMPARE(menu.selected(), u"File Drop"_s);
    QVERIFY(menu.panel().isVisible());
    QTest::mouseClick(rows, Qt::LeftButton, {}, menu.middleOf(8));
    QVERIFY(!menu.panel().isVisible());
    menu.clock.advance(1ms);
    QCOMPARE(menu.activated, QStringList{u"open-project"_s});
  }

  void goingOfflineMarksRowsWhileTheyAreShown() {
    ShownMenu menu;
    const QRect card = menu.card();
    menu.setOnline(false);
    QVERIFY(menu.list().isVisible());
    QCOMPARE(menu.card(), card);
    QTest::mouseClick(menu.list().viewport(), Qt::LeftButton, {}, menu.middleOf(1));
    QCOMPARE(menu.sounds.beeps, 1);
    QVERIFY(menu.panel().isVisible());
  }

  void anEmptyListSaysSo() {
    ShownMenu menu;
    QTest::keyClicks(&menu.panel(), u"nothing like it"_s);
    QVERIFY(!menu.list().isVisible());
    QTest::keyClick(&menu.panel(), Qt::Key_Escape);
    QVERIFY(menu.list().isVisible());
  }

  void aScreenReaderReadsAndPressesTheRows() {
    ShownMenu menu;
    QAccessibleInterface* list = QAccessible::queryAccessibleInterface(&menu.list());
    QCOMPARE(list->role(), QAccessible::List);
    QCOMPARE(list->text(QAccessible::Name), u"Menu"_s);
    QCOMPARE(list->childCount(), menu.controller.model().rowCount());
    QAccessibleInterface* row = list->child(1);
    QCOMPARE(row->role(), QAccessible::ListItem);
    QCOMPARE(row->text(QAccessible::Name), u"Image to URL"_s);
    QCOMPARE(row->text(QAccessible::Description), u"Ctrl+Alt+U"_s);
    QCOMPARE(list->indexOfChild(row), 1);
    QCOMPARE(list->childAt(row->rect().center().x(), row->rect().center().y()), row);
    QVERIFY(list->child(0)->state().selected);
    QVERIFY(!row->state().selected);
    QCOMPARE(list->child(14)->role(), QAccessible::Separator);

    // Numbers stay, rows come and go.
    QTest::keyClicks(&menu.panel(), u"feed"_s);
    QCOMPARE(list->childCount(), 1);
    QVERIFY(!row->isValid());
    QCOMPARE(list->child(0)->text(QAccessible::Name), u"Feedback"_s);
    list->child(0)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    menu.clock.advance(1ms);
    QCOMPARE(menu.activated, QStringList{u"feedback"_s});
  }
};

QTEST_MAIN(MenuWindowTest)
#include "menu_window_test.moc"
