#include "capture/region_selection_controller.h"

#include <QTest>
#include <QWindow>

#include "support/fake_presenters.h"
#include "support/fake_screen_grabber.h"
#include "support/two_screens.h"

using namespace Qt::StringLiterals;

namespace {

/// What the controller did to one overlay; outlives it.
struct OverlayLog {
  SelectionOverlay::Request request;
  QWindow window;
  int fronts = 0;
  int keys = 0;
  int outs = 0;
  bool isAlive = true;
};

class FakeOverlay final : public SelectionOverlay {
 public:
  explicit FakeOverlay(OverlayLog& log) : log_(log) {}
  ~FakeOverlay() override { log_.isAlive = false; }
  void orderFront() override { ++log_.fronts; }
  void orderOut() override { ++log_.outs; }
  void makeKey() override { ++log_.keys; }
  QWindow* nativeWindow() const override { return &log_.window; }

 private:
  OverlayLog& log_;
};

struct World {
  explicit World(bool live = false) { grabber.live = live; }

  void begin(const QString& label = u"Image to URL"_s) {
    controller.begin(label, u"link.badge.plus"_s, [this](const std::optional<QByteArray>& png) {
      answers.push_back(png);
      if (then) std::exchange(then, nullptr)();
    });
  }
  /// Until the overlays stand.
  void beginAndShow() {
    begin();
    QCoreApplication::processEvents();
    grabber.answerAll();
  }
  bool allOut() const {
    return std::ranges::all_of(overlays, [](const auto& each) { return each->fronts == 1 && each->outs == 1; });
  }

  FakeScreenGrabber grabber;
  FakeToasts toasts;
  std::vector<std::unique_ptr<OverlayLog>> overlays;
  std::vector<std::optional<QByteArray>> answers;
  std::function<void()> then;
  RegionSelectionController controller{grabber, toasts, [this](SelectionOverlay::Request request) {
                                         overlays.push_back(std::make_unique<OverlayLog>(std::move(request)));
                                         return std::make_unique<FakeOverlay>(*overlays.back());
                                       }};
};

const QRectF kRect(1700, 200, 100, 50);

}  // namespace

class RegionSelectionControllerTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void everyScreenIsGrabbedBeforeAnyOverlayShows() {
    World world;
    world.begin();
    QVERIFY(world.controller.isSelecting());
    QCOMPARE(world.toasts.dismissals, 1);
    QCoreApplication::processEvents();
    QCOMPARE(world.grabber.asked.size(), 2U);
    QCOMPARE(world.grabber.asked[1].area.screen, QRect(1600, 100, 1280, 1024));
    QCOMPARE(world.grabber.asked[1].area.pixels, QRect(0, 0, 1280, 1024));
    world.grabber.asked[0].answer();
    QVERIFY(world.overlays.empty());
    world.grabber.asked[1].answer();
    QCOMPARE(world.overlays.size(), 2U);
    QCOMPARE(world.overlays[0]->keys + world.overlays[1]->keys, 1);
    QCOMPARE(world.overlays[1]->request.picture.size(), QSize(1280, 1024));
    QCOMPARE(world.overlays[0]->request.label, u"Image to URL"_s);
    QCOMPARE(world.overlays[0]->request.icon, u"link.badge.plus"_s);
  }

  void aSelectionIsCutOutOfWhatTheUserSaw() {
    World world;
    world.beginAndShow();
    world.grabber.color = Qt::blue;
    world.overlays[1]->request.onSelect(kRect);
    QVERIFY(!world.controller.isSelecting());
    QVERIFY(world.allOut());
    QTRY_COMPARE(world.answers.size(), 1U);
    QVERIFY(world.grabber.asked.empty());
    const QImage image = QImage::fromData(*world.answers[0], "png");
    QCOMPARE(image.size(), QSize(100, 50));
    QCOMPARE(image.pixelColor(99, 49), QColor(Qt::red));
    QTRY_VERIFY(!world.overlays[0]->isAlive && !world.overlays[1]->isAlive);
  }

  void wherePanelsCanBeLeftOutTheScreenIsCapturedAtTheEnd() {
    World world(true);
    world.beginAndShow();
    QCOMPARE(world.overlays.size(), 2U);
    QVERIFY(world.overlays[1]->request.picture.isNull());
    QVERIFY(world.grabber.asked.empty());
    world.overlays[1]->request.onSelect(kRect);
    QVERIFY(world.allOut());
    QCOMPARE(world.grabber.asked.size(), 1U);
    QCOMPARE(world.grabber.asked[0].area.points, QRectF(100, 100, 100, 50));
    QCOMPARE(world.grabber.asked[0].excluded.size(), 2U);
    world.grabber.answerAll();
    QCOMPARE(world.answers, std::vector({std::optional(QByteArray("PNG"))}));
  }

  void cancellingEndsWithNothing() {
    World world;
    world.beginAndShow();
    world.overlays[0]->request.onCancel();
    QCOMPARE(world.answers, std::vector({std::optional<QByteArray>()}));
    QVERIFY(world.allOut());
    // Events that were on their way to the panels.
    world.overlays[0]->request.onCancel();
    world.overlays[1]->request.onSelect(kRect);
    QTest::qWait(0);
    QCOMPARE(world.answers.size(), 1U);
  }

  void theCallerLearnsWhetherTheUserHasTurnedAway() {
    World world;
    std::vector<bool> away;
    const auto note = [&] { away.push_back(world.controller.hasUserTurnedAway()); };
    world.then = note;
    world.beginAndShow();
    world.overlays[0]->request.onCancel();
    world.then = note;
    world.beginAndShow();
    // Not at once: what took the keyboard is still about to show.
    world.overlays[2]->request.onKeyboardLost();
    QCOMPARE(world.answers.size(), 1U);
    QVERIFY(world.allOut());
    QTRY_COMPARE(world.answers.size(), 2U);
    // Another selection takes the place of this one.
    world.then = note;
    world.beginAndShow();
    world.begin();
    QTRY_COMPARE(world.answers.size(), 3U);
    QCOMPARE(away, std::vector({false, true, true}));
    QCOMPARE(world.answers, std::vector(3, std::optional<QByteArray>()));
  }

  void aSliverIsNoSelection() {
    World world;
    world.beginAndShow();
    world.overlays[1]->request.onSelect({1700, 200, 3, 200});
    QCOMPARE(world.answers, std::vector({std::optional<QByteArray>()}));
  }

  void failuresAreLoggedAndEndWithNothing_data() {
    QTest::addColumn<bool>("live");
    QTest::newRow("before the overlays") << false;
    QTest::newRow("after them") << true;
  }

  void failuresAreLoggedAndEndWithNothing() {
    QFETCH(bool, live);
    World world(live);
    world.grabber.error = u"no permission"_s;
    QTest::ignoreMessage(QtWarningMsg, "ScreenCapture failed: no permission");
    world.beginAndShow();
    if (live) {
      world.overlays[0]->request.onSelect({10, 10, 100, 100});
      world.grabber.answerAll();
    }
    QCOMPARE(world.answers, std::vector({std::optional<QByteArray>()}));
    QVERIFY(!world.controller.isSelecting());
  }

  void aSecondSelectionTakesTheFirstOnesPlace() {
    World world;
    world.beginAndShow();
    world.begin(u"Add Snip"_s);
    QVERIFY(world.answers.empty());
    QVERIFY(world.allOut());
    QTRY_COMPARE(world.answers.size(), 1U);
    QVERIFY(!world.answers[0]);
    world.grabber.answerAll();
    QCOMPARE(world.overlays.size(), 4U);
    QCOMPARE(world.overlays[2]->request.label, u"Add Snip"_s);
    world.overlays[2]->request.onSelect({10, 10, 100, 100});
    QTRY_COMPARE(world.answers.size(), 2U);
    QVERIFY(world.answers[1]);
  }

  void theNextSelectionLeavesTheCaptureOfTheLastAlone() {
    World world;
    world.beginAndShow();
    world.overlays[0]->request.onSelect({10, 10, 100, 100});
    world.begin();
    QTRY_COMPARE(world.answers.size(), 1U);
    QVERIFY(world.answers[0]);
    QVERIFY(world.controller.isSelecting());
  }

  void aCompletionMayBeginAnew() {
    World world;
    world.beginAndShow();
    world.then = [&world] { world.begin(); };
    world.overlays[0]->request.onCancel();
    QCOMPARE(world.answers.size(), 1U);
    QVERIFY(world.controller.isSelecting());
    QCoreApplication::processEvents();
    world.grabber.answerAll();
    QCOMPARE(world.overlays.size(), 4U);
    QVERIFY(world.overlays[3]->isAlive);
  }
};

int main(int argc, char** argv) { return runOnTwoScreens<RegionSelectionControllerTest>(argc, argv); }
#include "region_selection_controller_test.moc"
