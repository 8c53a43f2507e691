#include "core/ui/launcher/tool_launcher_panel.h"

#include <QScreen>
#include <QTest>

#include "core/ui/search_field.h"
#include "core/ui/theme.h"
#include "launcher_stage.h"

using namespace Qt::StringLiterals;

namespace {

/// The user takes the card by the query line and moves it.
void dragCard(PalettePanel& window, QPoint by) {
  auto* handle = window.findChild<SearchField*>();
  const QPoint start(100, 20);
  QTest::mousePress(handle, Qt::LeftButton, {}, start);
  for (const QPoint& way : {by / 2, by}) {
    const QPoint goal = window.property("home").toPoint() + way;
    QTest::mouseMove(handle, start + goal - window.pos());
  }
  QTest::mouseRelease(handle, Qt::LeftButton, {}, start);
}

}  // namespace

class ToolLauncherPanelTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void theCardShrinksToTheRowsAndItsTopStays() {
    ShownLauncher stage;
    PalettePanel& window = stage.window();
    const QRect full = window.geometry();
    stage.type(u"url"_s);
    QCOMPARE(window.pos(), full.topLeft());
    QCOMPARE(window.height(), full.height() - 2 * (ToolTile::kSize.height() + Theme::kGrid));
    // A click where the card was before is a click elsewhere.
    QCOMPARE(stage.fakeNative.watchedCard.height(), window.height() - 2 * Theme::kPanelMargin);
    stage.key(keycode::kEscape);
    QCOMPARE(window.geometry(), full);
    stage.type(u"url"_s);
    stage.controller.dismiss();
    stage.controller.show();
    QCOMPARE(window.geometry(), full);
    QCOMPARE(window.findChild<SearchField*>()->text(), QString());
  }

  void itIsCentredUntilTheUserMovesItAndThenRemembered() {
    ShownLauncher stage;
    PalettePanel& window = stage.window();
    const QPoint home = window.pos();
    QCOMPARE(window.geometry().center().x(), window.screen()->availableGeometry().center().x());
    window.setProperty("home", home);
    dragCard(window, {2, 1});
    QCOMPARE(window.pos(), home);
    QVERIFY(!stage.defaults.contains("launcher.originX"));
    dragCard(window, {30, -40});
    QCOMPARE(window.pos(), home + QPoint(30, -40));
    QCOMPARE(stage.defaults.value("launcher.originX").toInt(), home.x() + 30);
    QCOMPARE(stage.defaults.value("launcher.originY").toInt(), home.y() - 40);

    stage.controller.dismiss();
    window.move(0, 0);
    stage.controller.show();
    QCOMPARE(window.pos(), home + QPoint(30, -40));
    stage.controller.dismiss();
    stage.defaults.setValue("launcher.originX", 90'000);
    stage.controller.show();
    QCOMPARE(window.pos(), home);
  }

  void aClickElsewhereCloses() {
    ShownLauncher stage;
    QVERIFY(stage.fakeNative.keyboardOwner);
    stage.fakeNative.loseKeyboard();
    QVERIFY(!stage.window().isVisible());
    QVERIFY(!stage.fakeNative.keyboardOwner);
    QVERIFY(!stage.controller.model().isShown());
  }

  void anExitGivesTheKeyboardBackBeforeItFades() {
    ShownLauncher stage;
    stage.desktop.motionReduced = false;
    PalettePanel& window = stage.window();
    stage.controller.dismiss();
    QVERIFY(window.isVisible());
    QVERIFY(!stage.fakeNative.keyboardOwner);
    QTRY_VERIFY(!window.isVisible());

    // Summoned again in the middle of an exit it is whole at once and stays.
    stage.controller.show();
    QTRY_COMPARE(window.windowOpacity(), 1.0);
    stage.controller.dismiss();
    stage.controller.show();
    QCOMPARE(window.windowOpacity(), 1.0);
    QVERIFY(stage.fakeNative.keyboardOwner);
    QTest::qWait(0);
    stage.type(u"ask"_s);
    QCOMPARE(stage.controller.model().query(), u"ask"_s);
  }

  void lessMotionAndStartingAToolMeanNoFade() {
    ShownLauncher stage;
    QCOMPARE(stage.window().windowOpacity(), 1.0);
    stage.controller.dismiss();
    QVERIFY(!stage.window().isVisible());
    stage.desktop.motionReduced = false;
    stage.controller.show();
    stage.key(keycode::kReturn);
    QVERIFY(!stage.window().isVisible());
  }
};

QTEST_MAIN(ToolLauncherPanelTest)
#include "tool_launcher_panel_test.moc"
