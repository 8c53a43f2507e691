#include <QAbstractNativeEventFilter>
#include <QGuiApplication>
#include <QProcess>
#include <QTest>

#include <algorithm>
#include <atomic>
#include <map>
#include <thread>

#include "platform/carbon_modifiers.h"
#include "platform/platform.h"
#include "platform/x11/xcb_xkb.h"
#include "support/x_client.h"

namespace {

constexpr xcb_keycode_t kCtrl = 37;
constexpr xcb_keycode_t kAlt = 64;
constexpr xcb_keycode_t kShift = 50;
constexpr xcb_keycode_t kSuper = 133;
constexpr xcb_keycode_t kReturn = 36;
constexpr xcb_keycode_t kU = 30;
constexpr std::uint32_t kControlOption = carbon::kControl | carbon::kOption;
constexpr int kCtrlAlt = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1;

enum Mac : std::uint32_t { kMacA = 0, kMacZ = 6, kMacU = 32, kMacReturn = 36 };

/// Sees all key presses before the hotkeys do.
class PressCounter final : public QAbstractNativeEventFilter {
 public:
  PressCounter() { qApp->installNativeEventFilter(this); }
  bool nativeEventFilter(const QByteArray&, void* message, qintptr*) override {
    presses += static_cast<const xcb_generic_event_t*>(message)->response_type == XCB_KEY_PRESS ? 1 : 0;
    return false;
  }
  int presses = 0;
};

}  // namespace

class X11HotkeysTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    setLayout({QStringLiteral("us")});
    hotkeys_ = makePlatform().hotkeys;
    presses_.clear();
    hotkeys_->install([this](std::uint32_t id) { ++presses_[id]; });
  }
  void cleanup() { hotkeys_.reset(); }

  void pressReachesItsId_data() {
    QTest::addColumn<QList<int>>("locks");
    QTest::newRow("no lock") << QList<int>{};
    QTest::newRow("Caps Lock") << QList<int>{0xffe5};
    QTest::newRow("Num Lock") << QList<int>{0xff7f};
    QTest::newRow("both") << QList<int>{0xffe5, 0xff7f};
  }
  void pressReachesItsId() {
    QFETCH(QList<int>, locks);
    const auto toggle = [&] {
      for (const int lock : locks) user_.tap(user_.keyCode(static_cast<xcb_keysym_t>(lock)));
    };
    toggle();
    QVERIFY(hotkeys_->registerHotkey(7, kMacU, kControlOption));
    QVERIFY(hotkeys_->registerHotkey(8, kMacU, kControlOption | carbon::kShift));
    QVERIFY(hotkeys_->registerHotkey(9, kMacU, carbon::kCommand));
    user_.chord({kCtrl, kAlt}, kU);
    QTRY_COMPARE(presses_, (Presses{{7, 1}}));
    user_.chord({kCtrl, kAlt, kShift}, kU);
    QTRY_COMPARE(presses_, (Presses{{7, 1}, {8, 1}}));
    user_.chord({kSuper}, kU);
    QTRY_COMPARE(presses_, (Presses{{7, 1}, {8, 1}, {9, 1}}));
    toggle();
  }

  void takenElsewhereIsRefused_data() {
    QTest::addColumn<int>("locks");
    QTest::newRow("as it is") << 0;
    QTest::newRow("one variant only, so that the rest must be given back") << int{XCB_MOD_MASK_2};
  }
  void takenElsewhereIsRefused() {
    QFETCH(int, locks);
    XClient other;
    QVERIFY(other.take(kU, kCtrlAlt | locks));
    const auto refused = hotkeys_->registerHotkey(1, kMacU, kControlOption);
    QVERIFY(!refused);
    QCOMPARE(refused.error().reason, HotkeyRefusal::Reason::taken);
    for (const int lock : {0, int{XCB_MOD_MASK_LOCK}, int{XCB_MOD_MASK_2}, XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2}) {
      QVERIFY(other.take(kU, kCtrlAlt | lock));
      other.give(kU, kCtrlAlt | lock);
    }
    QVERIFY(hotkeys_->registerHotkey(2, kMacU, kControlOption));
    QVERIFY(!other.take(kU, kCtrlAlt));
    hotkeys_->unregisterHotkey(2);
    QVERIFY(other.take(kU, kCtrlAlt));
  }

  /// Another program may ask for it the moment after.
  void whatIsGivenBackIsFreeWhenTheCallReturns() {
    QVERIFY(hotkeys_->registerHotkey(1, kMacU, kControlOption));
    XClient busy;
    busy.holdServer();
    std::atomic<bool> isHeld = true;
    const std::jthread release([&busy, &isHeld] {
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
      isHeld = false;
      busy.releaseServer();
    });
    hotkeys_->unregisterHotkey(1);
    QVERIFY(!isHeld);
  }

  void oneCombinationHasOneOwner() {
    QVERIFY(hotkeys_->registerHotkey(1, kMacU, kControlOption));
    QVERIFY(!hotkeys_->registerHotkey(2, kMacU, kControlOption));
    const auto unknown = hotkeys_->registerHotkey(3, 999, kControlOption);
    QCOMPARE(unknown.error().reason, HotkeyRefusal::Reason::noSuchKey);
  }

  void holdingIsOnePress() {
    QVERIFY(hotkeys_->registerHotkey(1, kMacU, kControlOption));
    QCOMPARE(QProcess::execute(QStringLiteral("xset"), {QStringLiteral("r"), QStringLiteral("rate"),
                                                        QStringLiteral("50"), QStringLiteral("100")}),
             0);
    PressCounter seen;
    user_.key(kCtrl, true);
    user_.key(kAlt, true);
    user_.key(kU, true);
    QTRY_VERIFY(seen.presses > 5);
    QTRY_COMPARE(presses_, (Presses{{1, 1}}));
    user_.key(kU, false);
    waitForTheNextMillisecond();
    user_.tap(kU);
    QTRY_COMPARE(presses_, (Presses{{1, 2}}));
    user_.key(kAlt, false);
    user_.key(kCtrl, false);
  }

  /// A tap that is over before the press is handled must not leave the key "held".
  void quickTapsAllCount() {
    QVERIFY(hotkeys_->registerHotkey(1, kMacU, kControlOption));
    user_.key(kCtrl, true);
    user_.key(kAlt, true);
    for (int tap = 1; tap <= 20; ++tap) {
      user_.tap(kU);
      QTRY_COMPARE(presses_, (Presses{{1, tap}}));
      waitForTheNextMillisecond();
    }
    user_.key(kAlt, false);
    user_.key(kCtrl, false);
  }

  void grabsFollowTheLayout() {
    QVERIFY(hotkeys_->registerHotkey(1, kMacZ, kControlOption));
    QVERIFY(hotkeys_->registerHotkey(2, kMacA, kControlOption));
    user_.chord({kCtrl, kAlt}, 52);
    QTRY_COMPARE(presses_, (Presses{{1, 1}}));

    // Y and Z change places, so do their grabs.
    setLayout({QStringLiteral("de")});
    QTRY_VERIFY(isFree(52) && !isFree(29));
    user_.chord({kCtrl, kAlt}, 29);
    QTRY_COMPARE(presses_, (Presses{{1, 2}}));

    setLayout({QStringLiteral("fr")});
    QTRY_VERIFY(isFree(38) && !isFree(24));
    user_.chord({kCtrl, kAlt}, 24);
    QTRY_COMPARE(presses_, (Presses{{1, 2}, {2, 1}}));
  }

  void switchingBetweenTwoLayouts() {
    setLayout({QStringLiteral("us,ru,de")});
    QVERIFY(hotkeys_->registerHotkey(1, kMacZ, kControlOption));
    lockGroup(1);
    user_.chord({kCtrl, kAlt}, 52);
    QTRY_COMPARE(presses_, (Presses{{1, 1}}));
    lockGroup(2);
    QTRY_VERIFY(isFree(52));
    user_.chord({kCtrl, kAlt}, 29);
    QTRY_COMPARE(presses_, (Presses{{1, 2}}));
    lockGroup(0);
  }

  /// Somebody takes what the new layout would need; it comes back with the next change.
  void takenOnOneLayoutOnly() {
    QVERIFY(hotkeys_->registerHotkey(1, kMacZ, kControlOption));
    {
      XClient other;
      QVERIFY(other.take(29, kCtrlAlt));
      setLayout({QStringLiteral("de")});
      QTRY_VERIFY(isFree(52));
    }
    setLayout({QStringLiteral("us")});
    QTRY_VERIFY(!isFree(52));
    user_.chord({kCtrl, kAlt}, 52);
    QTRY_COMPARE(presses_, (Presses{{1, 1}}));
  }

  /// The keyboard stands still from a shortcut's press until it is handled, also when nobody wants it any more.
  void everybodyTypesOnAfterAPress_data() {
    QTest::addColumn<bool>("given");
    QTest::newRow("handled") << false;
    QTest::newRow("given back before it was read") << true;
  }
  void everybodyTypesOnAfterAPress() {
    QFETCH(bool, given);
    QVERIFY(hotkeys_->registerHotkey(1, kMacU, kControlOption));
    XClient other;
    other.openWindow(10, 10, 100, 100);
    QTRY_COMPARE(other.focusedWindow(), other.window());
    user_.chord({kCtrl, kAlt}, kU);
    if (given) hotkeys_->unregisterHotkey(1);
    user_.tap(kReturn);
    QTRY_COMPARE(std::ranges::count(other.keysReceived(), kReturn), 1);
    QCOMPARE(presses_[1], given ? 0 : 1);
  }

  void unregisteredIsSilent() {
    QVERIFY(hotkeys_->registerHotkey(1, kMacReturn, kControlOption));
    QVERIFY(hotkeys_->registerHotkey(2, kMacU, kControlOption));
    hotkeys_->unregisterHotkey(1);
    hotkeys_->unregisterHotkey(77);
    user_.chord({kCtrl, kAlt}, kReturn);
    user_.chord({kCtrl, kAlt}, kU);
    QTRY_COMPARE(presses_, (Presses{{2, 1}}));
  }

 private:
  using Presses = std::map<std::uint32_t, int>;

  /// A release and a press in one millisecond of the server's clock look like a repetition.
  static void waitForTheNextMillisecond() { QTest::qWait(2); }
  static void setLayout(const QStringList& arguments) {
    QCOMPARE(QProcess::execute(QStringLiteral("setxkbmap"), arguments), 0);
  }
  void lockGroup(std::uint8_t group) {
    xcb_xkb_use_extension(user_.connection(), 1, 0);
    xcb_xkb_latch_lock_state(user_.connection(), XCB_XKB_ID_USE_CORE_KBD, 0, 0, true, group, 0, false, 0);
    xcb_flush(user_.connection());
    const auto current = [this] {
      xcb_xkb_get_state_reply_t* reply = xcb_xkb_get_state_reply(
          user_.connection(), xcb_xkb_get_state(user_.connection(), XCB_XKB_ID_USE_CORE_KBD), nullptr);
      const int locked = reply->group;
      std::free(reply);
      return locked;
    };
    QTRY_COMPARE(current(), int{group});
  }
  bool isFree(xcb_keycode_t code) {
    const bool free = user_.take(code, kCtrlAlt);
    if (free) user_.give(code, kCtrlAlt);
    return free;
  }

  XClient user_;
  std::unique_ptr<HotkeyBackend> hotkeys_;
  Presses presses_;
};

QTEST_MAIN(X11HotkeysTest)
#include "x11_hotkeys_test.moc"
