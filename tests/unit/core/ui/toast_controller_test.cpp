#include "core/ui/toast/toast_controller.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include "support/fake_clock.h"
#include "support/fake_platform.h"
#include "support/fake_toast_surface.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

ToastContent titled(const QString& title) { return {.title = title}; }

struct World {
  QTemporaryDir folder;
  AppPreferences preferences{folder.filePath(u"app-settings.json"_s)};
  FakeSounds sounds;
  FakeClock clock;
  FakeToastSurface* surface = nullptr;
  int surfacesMade = 0;
  ToastController controller{[this](ToastController&) {
                               auto made = std::make_unique<FakeToastSurface>();
                               surface = made.get();
                               ++surfacesMade;
                               return made;
                             },
                             preferences, sounds, clock};
};

}  // namespace

class ToastControllerTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void comesInOnTheNextTurnAndLeavesByItself() {
    World world;
    world.controller.show(titled(u"Done"_s), 4s);
    QVERIFY(world.surface->onScreen);
    QVERIFY(!world.controller.model().isShown());
    world.clock.advance(0ms);
    QVERIFY(world.controller.model().isShown());

    world.clock.advance(3999ms);
    QVERIFY(world.controller.model().isShown());
    world.clock.advance(1ms);
    QVERIFY(!world.controller.model().isShown());
    QVERIFY(world.surface->onScreen);
    world.clock.advance(419ms);
    QVERIFY(world.surface->onScreen);
    world.clock.advance(1ms);
    QVERIFY(!world.surface->onScreen);

    world.controller.show(titled(u"Again"_s), 4s);
    QVERIFY(world.surface->onScreen);
    QCOMPARE(world.surfacesMade, 1);
    QCOMPARE(world.surface->fronts, 2);
  }

  void aSecondToastMorphsAndStaysItsWholeDuration() {
    World world;
    world.controller.show(titled(u"First"_s), 4s);
    world.clock.advance(3s);
    QSignalSpy changed(&world.controller.model(), &ToastModel::toastChanged);
    world.controller.show(titled(u"Second"_s), 5s);
    QCOMPARE(changed.size(), 1);
    QCOMPARE(world.surface->fronts, 1);
    QVERIFY(world.controller.model().isShown());
    QCOMPARE(world.controller.model().content().title, u"Second"_s);
    QCOMPARE(world.controller.model().startDate(), world.clock.monotonic());

    world.clock.advance(4999ms);
    QVERIFY(world.controller.model().isShown());
    world.clock.advance(1ms);
    QVERIFY(!world.controller.model().isShown());
  }

  void aToastDuringTheExitOfAnotherStaysUp() {
    World world;
    world.controller.show(titled(u"First"_s), 4s);
    world.clock.advance(1s);
    world.controller.dismiss(true);
    world.clock.advance(200ms);
    world.controller.show(titled(u"Second"_s), 4s);
    QVERIFY(world.controller.model().isShown());
    world.clock.advance(3999ms);
    QVERIFY(world.surface->onScreen);
    QVERIFY(world.controller.model().isShown());
  }

  void dismissingAgainDoesNotProlongTheExit() {
    World world;
    world.controller.dismiss(true);
    QCOMPARE(world.surfacesMade, 0);
    world.controller.show(titled(u"First"_s), 4s);
    world.clock.advance(1s);
    world.controller.dismiss(true);
    world.clock.advance(300ms);
    world.controller.dismiss(false);
    world.clock.advance(120ms);
    QVERIFY(!world.surface->onScreen);
  }

  void onlyFinishedTasksSound() {
    World world;
    world.controller.show({.title = u"Working"_s, .showsSpinner = true}, 4s);
    QCOMPARE(world.sounds.completions, 0);
    world.controller.show({.title = u"Done"_s, .completes = true}, 4s);
    QCOMPARE(world.sounds.completions, 1);
    world.preferences.update([](Preferences& record) { record.soundOnComplete = false; });
    world.controller.show({.title = u"Done"_s, .completes = true}, 4s);
    QCOMPARE(world.sounds.completions, 1);
  }

  void swipesUpDismissWhicheverWayScrollingGoes() {
    for (const double delta : {8.0, -8.0}) {
      for (const bool inverted : {false, true}) {
        const bool isUp = (delta > 0) != inverted;
        World world;
        world.controller.show(titled(u"First"_s), 4s);
        world.clock.advance(0ms);
        // Three steps make 24 points; after two the toast still stands.
        QVERIFY(!world.controller.scrolled({delta, inverted, true}));
        QVERIFY(!world.controller.scrolled({delta, inverted, false}));
        QVERIFY(world.controller.model().isShown());
        QCOMPARE(world.controller.scrolled({delta, inverted, false}), isUp);
        QCOMPARE(world.controller.model().isShown(), !isUp);
      }
    }
  }

  void aSwipeStartsAnewWithEachGestureAndToast() {
    World world;
    world.controller.show(titled(u"First"_s), 4s);
    world.clock.advance(0ms);
    QVERIFY(!world.controller.scrolled({22, false, false}));
    QVERIFY(!world.controller.scrolled({22, false, true}));
    world.controller.show(titled(u"Second"_s), 4s);
    QVERIFY(!world.controller.scrolled({22, false, false}));
    QVERIFY(world.controller.scrolled({0.5, false, false}));
    // On its way out it takes no more swipes.
    QVERIFY(!world.controller.scrolled({100, false, false}));
  }

  void swipingCanBeSwitchedOff() {
    World world;
    world.preferences.update([](Preferences& record) { record.swipeToDismiss = false; });
    world.controller.show(titled(u"First"_s), 4s);
    world.clock.advance(0ms);
    QVERIFY(!world.controller.scrolled({100, false, true}));
    QVERIFY(world.controller.model().isShown());
  }

  void aTapMayShowTheNextToast() {
    World world;
    ToastContent first = titled(u"First"_s);
    first.onTap = [&world, message = u"Second, from a text that dies with the first toast"_s] {
      world.controller.show(titled(u"Second"_s), 4s);
      QVERIFY(!message.isEmpty());
    };
    world.controller.show(first, 4s);
    world.controller.tapped();
    QCOMPARE(world.controller.model().content().title, u"Second"_s);
    world.controller.tapped();
    QCOMPARE(world.controller.model().content().title, u"Second"_s);
  }
};

QTEST_GUILESS_MAIN(ToastControllerTest)
#include "toast_controller_test.moc"
