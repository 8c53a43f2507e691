#include "core/ui/toast/toast_panel.h"

#include <QAbstractButton>
#include <QAbstractEventDispatcher>
#include <QAccessible>
#include <QTemporaryDir>
#include <QWindow>

#include "core/ui/toast/toast_view.h"
#include "support/fake_panel_window.h"
#include "support/fake_platform.h"
#include "support/two_screens.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

struct World {
  explicit World(bool translucent = true) {
    native.translucent = translucent;
    system.motionReduced = false;
  }

  ToastView& view() const { return *panel->findChild<ToastView*>(); }
  QAbstractButton& closeButton() const { return *panel->findChild<QAbstractButton*>(); }
  bool runsTimers() const { return !QAbstractEventDispatcher::instance()->registeredTimers(&view()).isEmpty(); }
  /// Shows a toast and waits until it stands still.
  void show(ToastContent content, std::chrono::milliseconds duration = 8s) {
    controller.show(std::move(content), duration);
    QTRY_VERIFY(controller.model().isShown());
    QTRY_COMPARE(view().cardRect().top(), kRestingTop);
  }
  void scroll(int angle) {
    const QPointF at = QRectF(view().cardRect()).center();
    QWheelEvent event(at, view().mapToGlobal(at), {}, {0, angle}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                      false);
    QApplication::sendEvent(&view(), &event);
  }

  static constexpr int kRestingTop = 16;

  QTemporaryDir folder;
  AppPreferences preferences{folder.filePath(u"app-settings.json"_s)};
  FakeSounds sounds;
  SystemClock clock;
  FakePanelWindow native;
  FakeSystem system;
  ToastPanel* panel = nullptr;
  ToastController controller{[this](ToastController& owner) {
                               auto made = std::make_unique<ToastPanel>(owner, native, system, clock);
                               panel = made.get();
                               return made;
                             },
                             preferences, sounds, clock};
};

}  // namespace

class ToastPanelTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void hangsFromTheTopOfThePointersScreen() {
    World world;
    QCursor::setPos(2000, 500);
    world.show({.title = u"Here"_s});
    QCOMPARE(world.panel->geometry(), QRect(1600 + 640 - 300, 100 - 4, 600, 300));
    QCOMPARE(world.native.keyboardOwner, nullptr);
  }

  void takesClicksOnTheCardAlone() {
    World world;
    int taps = 0;
    world.show({.title = u"Tap me"_s, .onTap = [&taps] { ++taps; }});
    QCOMPARE(world.native.inputRegion.boundingRect(), world.view().cardRect());
    QTest::mouseClick(&world.view(), Qt::LeftButton, {}, world.view().cardRect().center());
    QCOMPARE(taps, 1);
    QTest::mouseClick(&world.view(), Qt::RightButton, {}, world.view().cardRect().center());
    QTest::mouseClick(&world.view(), Qt::LeftButton, {}, {5, 290});
    QCOMPARE(taps, 1);
    world.controller.dismiss(true);
    QVERIFY(world.native.inputRegion.isEmpty());
    QTRY_VERIFY(!world.panel->isVisible());
  }

  void closesByItsButton() {
    World world;
    int taps = 0;
    world.show({.title = u"Close me"_s, .onTap = [&taps] { ++taps; }});
    QVERIFY(!world.closeButton().isVisible());
    QTest::mouseMove(&world.view(), world.view().cardRect().center());
    QTRY_VERIFY(world.closeButton().isVisible());
    QVERIFY(world.view().cardRect().contains(world.closeButton().geometry()));
    QTest::mouseClick(&world.closeButton(), Qt::LeftButton);
    QVERIFY(!world.controller.model().isShown());
    QCOMPARE(taps, 0);
  }

  void twoNotchesUpDismiss() {
    World world;
    world.show({.title = u"Swipe me"_s});
    world.scroll(120);
    QVERIFY(world.controller.model().isShown());
    world.scroll(120);
    QVERIFY(!world.controller.model().isShown());
  }

  void morphsToTheSizeOfTheNextToast() {
    World world;
    world.show({.title = u"Short"_s});
    const QRect before = world.view().cardRect();
    world.controller.show(
        {.title = u"A title that needs quite a bit more room than that"_s, .detail = u"And a line below it"_s}, 8s);
    QTRY_VERIFY(world.view().cardRect().width() > before.width());
    QTRY_COMPARE(world.native.inputRegion.boundingRect(), world.view().cardRect());
    QVERIFY(world.view().cardRect().height() > before.height());
  }

  void wakesNobodyOnceItIsGone() {
    World world;
    world.show({.title = u"Working"_s, .showsSpinner = true}, 8s);
    QVERIFY(world.runsTimers());
    world.controller.show({.title = u"Long work"_s}, 60s);
    QVERIFY(!world.runsTimers());
    world.controller.show({.title = u"Counting down"_s}, 10s);
    QVERIFY(world.runsTimers());
    world.controller.dismiss(true);
    QVERIFY(!world.runsTimers());
  }

  void isCutToItsCardWithoutTranslucency() {
    World world(false);
    world.show({.title = u"Plain"_s});
    QCOMPARE(world.panel->mask().boundingRect(), world.view().cardRect());
    world.controller.dismiss(true);
    QVERIFY(!world.panel->mask().intersects(world.panel->rect()));
  }

  void isReadAsAnAlert() {
    World world;
    world.show({.title = u"Link copied"_s, .detail = u"https://example.org"_s});
    QAccessibleInterface* toast = QAccessible::queryAccessibleInterface(&world.view());
    QCOMPARE(toast->role(), QAccessible::AlertMessage);
    QCOMPARE(toast->text(QAccessible::Name), u"Link copied. https://example.org"_s);
  }

  void survivesTextsOfAnyLengthAndKind() {
    World world;
    const QString lone(QChar(0xD83D));
    world.show({.title = QString(100'000, u'W'),
                .detail = QString(1'000'000, u'x') + u"\n\n\t"_s + lone,
                .detailLineLimit = 100'000,
                .keys = QStringList(50, u"⌘"_s)});
    QVERIFY(world.panel->rect().contains(world.view().cardRect()));
    QVERIFY(!world.view().grab().isNull());
    world.show({});
    QVERIFY(!world.view().cardRect().isEmpty());
  }
};

int main(int argc, char** argv) { return runOnTwoScreens<ToastPanelTest>(argc, argv); }
#include "toast_panel_test.moc"
