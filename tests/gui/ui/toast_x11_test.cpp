#include <QTemporaryDir>
#include <QTest>
#include <QWindow>

#include "core/ui/toast/toast_panel.h"
#include "core/ui/toast/toast_view.h"
#include "platform/platform.h"
#include "support/fake_platform.h"
#include "support/x_client.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// The system's panels, told whether there is a compositor: the test server has none.
class Composited final : public PanelWindow {
 public:
  Composited(PanelWindow& real, bool composited) : real_(real), composited_(composited) {}
  Qt::WindowFlags windowFlags(PanelKind kind) const override { return real_.windowFlags(kind); }
  void prepare(QWindow& window, PanelKind kind) override { real_.prepare(window, kind); }
  bool takeKeyboard(QWindow& window) override { return real_.takeKeyboard(window); }
  void releaseKeyboard(QWindow& window) override { real_.releaseKeyboard(window); }
  void watchKeyboardLoss(QWindow& window, const QRect& card, std::function<void()> lost) override {
    real_.watchKeyboardLoss(window, card, std::move(lost));
  }
  void stopWatching(QWindow& window) override { real_.stopWatching(window); }
  bool isTranslucencyAvailable() const override { return composited_; }
  void setInputRegion(QWindow& window, const QRegion& region) override { real_.setInputRegion(window, region); }

 private:
  PanelWindow& real_;
  bool composited_;
};

struct World {
  explicit World(bool composited) : native(*platform.panelWindow, composited) {}
  void show(ToastContent content) {
    controller.show(std::move(content), 8s);
    QTRY_VERIFY(controller.model().isShown());
    QTRY_COMPARE(panel->findChild<ToastView*>()->cardRect().top(), 16);
  }
  QRect card() const {
    const QRect card = panel->findChild<ToastView*>()->cardRect();
    return card.translated(panel->pos());
  }

  QTemporaryDir folder;
  AppPreferences preferences{folder.filePath(u"app-settings.json"_s)};
  FakeSounds sounds;
  SystemClock clock;
  Platform platform = makePlatform();
  Composited native;
  ToastPanel* panel = nullptr;
  ToastController controller{[this](ToastController& owner) {
                               auto made = std::make_unique<ToastPanel>(owner, native, *platform.systemInfo, clock);
                               panel = made.get();
                               return made;
                             },
                             preferences, sounds, clock};
};

}  // namespace

class ToastX11Test : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    application_.openWindow(500, 0, 900, 400);
    QTRY_COMPARE(application_.activeWindow(), application_.window());
    user_.moveTo(10, 700);
  }

  void clicksBesideTheCardReachTheApplicationBehind_data() {
    QTest::addColumn<bool>("composited");
    QTest::newRow("with a compositor") << true;
    QTest::newRow("without") << false;
  }

  void clicksBesideTheCardReachTheApplicationBehind() {
    QFETCH(bool, composited);
    World world(composited);
    int taps = 0;
    world.show({.title = u"Tap me"_s, .onTap = [&taps] { ++taps; }});
    const QRect card = world.card();
    const int before = application_.clicksReceived();
    user_.click(card.center().x(), card.center().y());
    QTRY_COMPARE(taps, 1);
    QCOMPARE(application_.clicksReceived(), before);

    user_.click(card.left() - 30, card.bottom());
    user_.click(card.center().x(), card.bottom() + 60);
    QTRY_COMPARE(application_.clicksReceived(), before + 2);
    QCOMPARE(taps, 1);
    QCOMPARE(user_.activeWindow(), application_.window());

    world.controller.dismiss(true);
    QTRY_VERIFY(!world.panel->isVisible());
    user_.click(card.center().x(), card.bottom());
    QTRY_COMPARE(application_.clicksReceived(), before + 3);
  }

  void theWheelSwipesItAway() {
    World world(true);
    world.show({.title = u"Swipe me"_s});
    const QPoint middle = world.card().center();
    user_.click(middle.x(), middle.y(), 4);
    user_.click(middle.x(), middle.y(), 4);
    QTRY_VERIFY(!world.controller.model().isShown());
    QCOMPARE(user_.activeWindow(), application_.window());
  }

 private:
  XClient application_;
  XClient user_;
};

QTEST_MAIN(ToastX11Test)
#include "toast_x11_test.moc"
