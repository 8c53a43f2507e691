#include <QScreen>
#include <QTest>

#include "capture/capture_pill.h"
#include "capture/selection_overlay_panel.h"
#include "capture/selection_view.h"
#include "support/fake_panel_window.h"
#include "support/fake_platform.h"
#include "support/two_screens.h"

using namespace Qt::StringLiterals;

namespace {

const QColor kPaper(200, 120, 40);
/// The same under 35 % of black.
const QColor kDimmed(130, 78, 26);

/// The overlay of the screen on the right: 1280 × 1024 at (1600, 100).
struct World {
  explicit World(bool frozen = true) {
    QScreen& screen = *QGuiApplication::screens().at(1);
    QImage picture;
    if (frozen) (picture = QImage(screen.size(), QImage::Format_RGB32)).fill(kPaper);
    panel = std::make_unique<SelectionOverlayPanel>(
        SelectionOverlay::Request{screen, u"Image to URL"_s, u"link.badge.plus"_s, picture,
                                  [this](const QRectF& rect) { selections.push_back(rect); }, [this] { ++cancels; },
                                  [this] { ++losses; }},
        native, system);
    panel->orderFront();
    view = panel->findChild<SelectionView*>();
  }

  void press(QPoint at, Qt::MouseButton button = Qt::LeftButton) { QTest::mousePress(view, button, {}, at); }
  void move(QPoint at) {
    const QPointF global = view->mapToGlobal(QPointF(at));
    QMouseEvent event(QEvent::MouseMove, at, global, Qt::NoButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(view, &event);
  }
  void release(QPoint at, Qt::MouseButton button = Qt::LeftButton) { QTest::mouseRelease(view, button, {}, at); }
  void drag(QPoint from, QPoint to) {
    press(from);
    move(to);
    release(to);
  }
  QImage drawn() const { return panel->grab().toImage(); }
  /// As it has been painted, piece by piece.
  QImage onScreen() const { return panel->screen()->grabWindow(panel->winId()).toImage(); }
  CapturePill* pill() const { return view->findChild<CapturePill*>(); }

  FakePanelWindow native;
  FakeSystem system;
  std::vector<QRectF> selections;
  int cancels = 0;
  int losses = 0;
  std::unique_ptr<SelectionOverlayPanel> panel;
  SelectionView* view = nullptr;
};

bool isNear(const QColor& color, const QColor& expected) {
  const auto near = [](int a, int b) { return std::abs(a - b) <= 2; };
  return near(color.red(), expected.red()) && near(color.green(), expected.green()) &&
         near(color.blue(), expected.blue());
}

}  // namespace

class SelectionOverlayTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void itCoversItsScreen() {
    World world;
    QCOMPARE(world.panel->geometry(), QRect(1600, 100, 1280, 1024));
    QCOMPARE(world.view->geometry(), QRect(0, 0, 1280, 1024));
    QCOMPARE(world.view->cursor().shape(), Qt::CrossCursor);
    QCOMPARE(world.native.keyboardOwner, nullptr);
    world.panel->makeKey();
    QCOMPARE(world.native.keyboardOwner, world.panel->windowHandle());
  }

  void aDragIsReportedInGlobalCoordinates() {
    World world;
    world.drag({300, 400}, {100, 350});
    QCOMPARE(world.selections, std::vector({QRectF(1700, 450, 200, 50)}));
    world.drag({1200, 1000}, {1279, 5000});
    QCOMPARE(world.selections[1], QRectF(2800, 1100, 80, 24));
  }

  void clicksAndSliversLetTheUserDragAgain() {
    World world;
    world.move({300, 300});
    QCOMPARE(world.pill()->pos(), QPoint(318, 318));
    world.press({300, 300});
    QCOMPARE(world.pill()->opacity(), 0.0);
    world.move({303, 500});
    world.release({303, 500});
    QCOMPARE(world.pill()->opacity(), 1.0);
    QCOMPARE(world.pill()->pos(), QPoint(321, 518));
    world.drag({10, 10}, {10, 10});
    QVERIFY(world.selections.empty());
    QCOMPARE(world.cancels, 0);
    QVERIFY(isNear(world.drawn().pixelColor(301, 400), kDimmed));
    world.drag({300, 300}, {305, 305});
    QCOMPARE(world.selections.size(), 1U);
  }

  void escapeAndTheOtherMouseButtonCancel() {
    World world;
    world.panel->makeKey();
    QTest::keyClick(world.panel.get(), Qt::Key_A);
    QCOMPARE(world.cancels, 0);
    QTest::keyClick(world.panel.get(), Qt::Key_Escape);
    QCOMPARE(world.cancels, 1);
    world.press({50, 50});
    world.move({90, 90});
    world.press({90, 90}, Qt::RightButton);
    QCOMPARE(world.cancels, 1);
    world.release({90, 90}, Qt::RightButton);
    QCOMPARE(world.cancels, 2);
  }

  void whoTakesTheKeyboardEndsIt() {
    World world;
    world.panel->makeKey();
    world.native.loseKeyboard();
    QCOMPARE(world.losses, 1);
    QCOMPARE(world.cancels, 0);
  }

  void orderedOutItGivesTheKeyboardBack() {
    World world;
    world.panel->makeKey();
    world.panel->orderOut();
    QCOMPARE(world.native.keyboardOwner, nullptr);
    QVERIFY(!world.native.isWatched());
    QVERIFY(!world.panel->isVisible());
  }

  void theRectangleIsUndimmedWithAnOutlineAndItsSize() {
    World world;
    world.press({400, 300});
    world.move({600, 420});
    const QImage drawn = world.drawn();
    QVERIFY(isNear(drawn.pixelColor(10, 10), kDimmed));
    QCOMPARE(drawn.pixelColor(500, 360), kPaper);
    // The outline lies on the edge, one pixel to either side.
    for (const int x : {399, 400}) QCOMPARE(drawn.pixelColor(x, 360), QColor(Qt::white));
    QVERIFY(isNear(drawn.pixelColor(398, 360), kDimmed));
    QCOMPARE(drawn.pixelColor(401, 360), kPaper);
    // The label: 6 below, three quarters black over the dimmed screen.
    QVERIFY(isNear(drawn.pixelColor(500, 425), kDimmed));
    QVERIFY(isNear(drawn.pixelColor(500, 428), QColor(32, 20, 6)));
  }

  void withoutAPictureTheScreenShowsThrough() {
    World world(false);
    world.press({400, 300});
    world.move({600, 420});
    QImage drawn(world.view->size(), QImage::Format_ARGB32_Premultiplied);
    drawn.fill(Qt::green);
    world.view->render(&drawn, {}, {}, {});
    QCOMPARE(drawn.pixelColor(10, 10).alpha(), 89);
    QCOMPARE(drawn.pixelColor(500, 360).alpha(), 0);
    QCOMPARE(drawn.pixelColor(400, 360), QColor(Qt::white));
  }

  /// Only what changes is painted again: the result is as if all had been.
  void nothingIsLeftOfEarlierRectangles() {
    World world;
    QVERIFY(QTest::qWaitForWindowExposed(world.panel.get()));
    world.press({400, 300});
    for (const QPoint to :
         {QPoint(600, 420), QPoint(450, 900), QPoint(420, 310), QPoint(380, 280), QPoint(900, 1020)}) {
      world.move(to);
      QCoreApplication::processEvents();
      const QImage painted = world.onScreen();
      QCOMPARE(painted.size(), world.view->size());
      QCOMPARE(painted, world.drawn().convertToFormat(painted.format()));
    }
  }

  void thePillFollowsThePointerAndStaysOnTheScreen() {
    World world;
    for (const QPoint at : {QPoint(0, 0), QPoint(1279, 0), QPoint(0, 1023), QPoint(1279, 1023)}) {
      world.move(at);
      QVERIFY(world.view->rect().adjusted(8, 8, -8, -8).contains(world.pill()->geometry()));
    }
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(world.view, &leave);
    QVERIFY(!world.pill()->isVisible());
    world.move({500, 500});
    QVERIFY(world.pill()->isVisible());
  }
};

int main(int argc, char** argv) { return runOnTwoScreens<SelectionOverlayTest>(argc, argv); }
#include "selection_overlay_test.moc"
