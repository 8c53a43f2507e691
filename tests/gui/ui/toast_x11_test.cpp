#include <xcb/xinput.h>

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
  bool isScrollingInverted(ScrollSource source) const override { return real_.isScrollingInverted(source); }
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
    scroll(world, kUp);
    QTRY_VERIFY(!world.controller.model().isShown());
    QCOMPARE(user_.activeWindow(), application_.window());
  }

  /// With natural scrolling the driver reports a turn of the wheel upwards as one downwards.
  void naturalScrollingTurnsTheSwipeRound() {
    setNaturalScrolling(true);
    World world(true);
    world.show({.title = u"Swipe me"_s});
    scroll(world, kUp);
    scroll(world, kDown);
    scroll(world, kDown);
    QTRY_VERIFY(!world.controller.model().isShown());
  }

  void cleanup() { setNaturalScrolling(false); }

 private:
  static constexpr std::uint8_t kUp = 4;
  static constexpr std::uint8_t kDown = 5;

  void scroll(const World& world, std::uint8_t button) {
    const QPoint middle = world.card().center();
    user_.click(middle.x(), middle.y(), button);
    user_.click(middle.x(), middle.y(), button);
  }
  /// As the desktop's settings do, on the device that the tests scroll with.
  void setNaturalScrolling(bool enabled) {
    constexpr xcb_input_device_id_t kTestPointer = 4;
    constexpr QByteArrayView kName = "libinput Natural Scrolling Enabled";
    const auto cookie = xcb_intern_atom(user_.connection(), false, kName.size(), kName.data());
    const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> name(
        xcb_intern_atom_reply(user_.connection(), cookie, nullptr), &std::free);
    std::uint8_t value = enabled ? 1 : 0;
    xcb_input_xi_change_property_items_t items{};
    items.data8 = &value;
    xcb_input_xi_change_property_aux(user_.connection(), kTestPointer, XCB_PROP_MODE_REPLACE, 8, name->atom,
                                     XCB_ATOM_INTEGER, 1, &items);
    xcb_flush(user_.connection());
  }

  XClient application_;
  XClient user_;
};

QTEST_MAIN(ToastX11Test)
#include "toast_x11_test.moc"
