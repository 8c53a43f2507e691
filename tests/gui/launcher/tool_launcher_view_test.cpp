#include <QAccessible>
#include <QTest>
#include <QWheelEvent>

#include "core/ui/launcher/sort_mode_control.h"
#include "launcher_stage.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

struct Stage : ShownLauncher {
  void wheel(int steps, Qt::ScrollPhase phase = Qt::NoScrollPhase) {
    static ulong timestamp = 1000;
    QWheelEvent event({50, 50}, grid().mapToGlobal(QPointF(50, 50)), {}, {0, -120 * steps}, Qt::NoButton,
                      Qt::NoModifier, phase, false);
    event.setTimestamp(timestamp += 1000);
    QCoreApplication::sendEvent(grid().parentWidget(), &event);
  }
  QAccessibleInterface& accessible(QLatin1StringView toolID) {
    return *QAccessible::queryAccessibleInterface(&tile(toolID));
  }
};

}  // namespace

class ToolLauncherViewTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void tilesAreButtonsAScreenReaderCanReadAndPress() {
    Stage stage;
    stage.registry.togglePin(u"uplink"_s);
    stage.controller.highlight(0);
    QAccessibleInterface& tile = stage.accessible("uplink"_L1);
    QCOMPARE(tile.role(), QAccessible::Button);
    QCOMPARE(tile.text(QAccessible::Name), u"Image to URL"_s);
    const QString description = tile.text(QAccessible::Description);
    QVERIFY(description.contains(u"Ctrl+Alt+U"_s));
    QVERIFY(description.contains(u"Pinned to the front of the grid"_s));
    QVERIFY(tile.state().focused);
    QVERIFY(!stage.accessible("frequent-clis"_L1).state().focused);
    QVERIFY(!stage.accessible("feedback"_L1).text(QAccessible::Description).contains(u"Pinned"_s));

    stage.accessible("vibe-history"_L1).actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    stage.clock.advance(1ms);
    QCOMPARE(stage.activated, QStringList{u"vibe-history"_s});
  }

  void goingOfflineMarksTilesWhileTheyAreShown() {
    Stage stage;
    const QString note = u"Needs the internet — offline right now"_s;
    stage.setOnline(false);
    QVERIFY(stage.tile("uplink"_L1).toolTip().contains(note));
    QVERIFY(!stage.tile("open-project"_L1).toolTip().contains(note));
    QTest::mouseClick(&stage.tile("uplink"_L1), Qt::LeftButton);
    QCOMPARE(stage.sounds.beeps, 1);
    QVERIFY(stage.window().isVisible());
    stage.setOnline(true);
    QVERIFY(!stage.tile("uplink"_L1).toolTip().contains(note));
  }

  void theMovingPointerHighlightsARestingOneDoesNot() {
    Stage stage;
    ToolTile& tile = stage.tile("quick-question"_L1);
    QTest::mouseMove(&tile, {20, 20});
    QCOMPARE(stage.controller.model().selectedItem()->id(), u"quick-question"_s);
    stage.controller.highlight(0);
    QTest::mouseMove(&tile, {20, 20});
    QCOMPARE(stage.controller.model().selectionIndex(), 0);
  }

  void wheelAndSwipesTurnOnePageAtATime() {
    Stage stage;
    stage.wheel(1);
    QCOMPARE(stage.controller.model().currentPage(), 1);
    stage.wheel(1);
    QCOMPARE(stage.controller.model().currentPage(), 1);
    stage.wheel(0, Qt::ScrollBegin);
    stage.wheel(-1, Qt::ScrollUpdate);
    QCOMPARE(stage.controller.model().currentPage(), 0);
    // The same swipe back and its momentum are spent.
    stage.wheel(1, Qt::ScrollUpdate);
    stage.wheel(1, Qt::ScrollMomentum);
    QCOMPARE(stage.controller.model().currentPage(), 0);
  }

  void inArrangeModeTilesAreCarriedNotStarted() {
    Stage stage;
    stage.key(keycode::kE, true);
    ToolTile& carried = stage.tile("uplink"_L1);
    const QPoint home = carried.pos();
    QTest::mousePress(&carried, Qt::LeftButton, {}, {30, 30});
    QCOMPARE(stage.controller.model().selectedItem()->id(), u"uplink"_s);
    const QPoint goal = stage.tile("quick-question"_L1).mapToGlobal(QPoint(30, 30));
    QTest::mouseMove(&carried, carried.mapFromGlobal(goal));
    // It hangs on the pointer while the others make room.
    QCOMPARE(carried.mapToGlobal(QPoint(30, 30)), goal);
    QCOMPARE(stage.order().indexOf(u"uplink"_s), 3);
    QCOMPARE(stage.tile("promptify"_L1).pos(), home);
    QTest::mouseRelease(&carried, Qt::LeftButton, {}, {30, 30});
    QCOMPARE(stage.order().indexOf(u"uplink"_s), 3);
    stage.clock.advance(1ms);
    QCOMPARE(stage.activated, QStringList());
  }

  void thePinOfATileIsClicked() {
    Stage stage;
    ToolTile& tile = stage.tile("promptify"_L1);
    const QPoint pin(tile.width() - 14, 14);
    stage.key(keycode::kE, true);
    QTest::mouseClick(&tile, Qt::LeftButton, {}, pin);
    QCOMPARE(stage.registry.pinnedToolIDs(), QStringList{u"promptify"_s});
    QCOMPARE(stage.order().first(), u"promptify"_s);
    // Let go elsewhere, it was no click, and the tile stays where it is.
    QTest::mousePress(&tile, Qt::LeftButton, {}, pin);
    QTest::mouseMove(&tile, {30, 60});
    QTest::mouseRelease(&tile, Qt::LeftButton, {}, {30, 60});
    QVERIFY(stage.registry.isPinned(u"promptify"_s));
    stage.accessible("promptify"_L1).actionInterface()->doAction(u"Pin"_s);
    QVERIFY(stage.registry.pinnedToolIDs().isEmpty());
  }

  void aTileHeldAtTheEdgeGoesToTheNextPage() {
    Stage stage;
    stage.key(keycode::kE, true);
    ToolTile& carried = stage.tile("uplink"_L1);
    QTest::mousePress(&carried, Qt::LeftButton, {}, {30, 30});
    const QPoint edge = stage.grid().mapToGlobal(QPoint(stage.grid().width() - 2, 150));
    QTest::mouseMove(&carried, carried.mapFromGlobal(edge));
    QTRY_COMPARE(stage.controller.model().currentPage(), 1);
    QCOMPARE(stage.order().indexOf(u"uplink"_s), 9);
    QCOMPARE(carried.mapToGlobal(QPoint(30, 30)), edge);
    QTest::mouseRelease(&carried, Qt::LeftButton, {}, {30, 30});
  }

  void theSortControlFollowsAndChangesTheOrder() {
    Stage stage;
    auto* control = stage.window().findChild<SortModeControl*>();
    const auto segments = control->findChildren<QAbstractButton*>();
    QTest::mouseClick(segments[3], Qt::LeftButton);
    QCOMPARE(stage.registry.sortMode(), ToolSortMode::alphabetical);
    QCOMPARE(stage.order().front(), u"ai-text-transform"_s);
    stage.registry.setSortMode(ToolSortMode::recent);
    QVERIFY(segments[2]->isChecked());
  }

  void anEmptyGridSaysSo() {
    Stage stage;
    stage.type(u"zzz"_s);
    QCOMPARE(stage.grid().accessibleName(), u"No matching tools"_s);
    QVERIFY(!stage.tile("uplink"_L1).isVisible());
    stage.key(keycode::kEscape);
    QVERIFY(stage.tile("uplink"_L1).isVisible());
  }
};

QTEST_MAIN(ToolLauncherViewTest)
#include "tool_launcher_view_test.moc"
