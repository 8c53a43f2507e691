#include <QKeyEvent>
#include <QMenu>
#include <QProcess>
#include <QTest>
#include <QWidget>

#include <algorithm>

#include "platform/carbon_modifiers.h"
#include "platform/platform.h"
#include "support/x_client.h"

namespace {

constexpr xcb_keycode_t kCtrl = 37;
constexpr xcb_keycode_t kAlt = 64;
constexpr xcb_keycode_t kSpace = 65;
constexpr xcb_keycode_t kFirstLetter = 24;  // q w e r t y
constexpr std::uint32_t kMacSpace = 49;
const QRect kPanel(700, 300, 400, 300);
const QRect kCard(48, 48, 304, 204);

class Panel final : public QWidget {
 public:
  explicit Panel(PanelWindow& native) : QWidget(nullptr, native.windowFlags(PanelKind::palette)), native_(native) {
    setGeometry(kPanel);
    winId();
  }
  bool present() {
    native_.prepare(*windowHandle(), PanelKind::palette);
    show();
    return native_.takeKeyboard(*windowHandle());
  }
  void dismiss() {
    native_.stopWatching(*windowHandle());
    native_.releaseKeyboard(*windowHandle());
    hide();
  }
  void watch() {
    native_.watchKeyboardLoss(*windowHandle(), kCard, [this] { ++losses; });
    sync();
  }
  /// Returns once the server has seen what was asked of it; another connection's clicks may come first otherwise.
  void sync() { native_.isTranslucencyAvailable(); }

  QString typed;
  int losses = 0;
  int clicks = 0;

 protected:
  void mousePressEvent(QMouseEvent*) override { ++clicks; }
  void keyPressEvent(QKeyEvent* event) override { typed += event->text(); }

 private:
  PanelWindow& native_;
};

}  // namespace

class X11PanelWindowTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    terminal_.openWindow(100, 100, 300, 200);
    QTRY_COMPARE(terminal_.activeWindow(), terminal_.window());
    QTRY_COMPARE(terminal_.focusedWindow(), terminal_.window());
  }
  void init() {
    platform_ = makePlatform();
    panel_ = std::make_unique<Panel>(*platform_.panelWindow);
    user_.moveTo(10, 700);
  }
  void cleanup() {
    panel_->dismiss();
    panel_.reset();
    QTRY_COMPARE(terminal_.focusedWindow(), terminal_.window());
  }

  void takesTheKeyboardAndLeavesTheActiveWindow() {
    const auto before = terminal_.keysReceived().size();
    QVERIFY(panel_->present());
    for (int letter = 0; letter < 6; ++letter) {
      user_.tap(static_cast<xcb_keycode_t>(kFirstLetter + letter));
      QCOMPARE(user_.activeWindow(), terminal_.window());
    }
    QTRY_COMPARE(panel_->typed, QStringLiteral("qwerty"));
    QVERIFY(panel_->isActiveWindow());
    QCOMPARE(terminal_.keysReceived().size(), before);

    panel_->dismiss();
    QCOMPARE(user_.activeWindow(), terminal_.window());
    QCOMPARE(user_.focusedWindow(), terminal_.window());
    user_.tap(kFirstLetter);
    QTRY_COMPARE(terminal_.keysReceived().size(), before + 1);
    QCOMPARE(terminal_.keysReceived().back(), kFirstLetter);
  }

  /// Where the compositor gives the keyboard only to windows that it manages, as the window manager here does too.
  void underWaylandThePanelIsTheActiveWindowWhileItIsShown() {
    panel_.reset();
    qputenv("WAYLAND_DISPLAY", "wayland-0");
    platform_ = makePlatform();
    qunsetenv("WAYLAND_DISPLAY");
    panel_ = std::make_unique<Panel>(*platform_.panelWindow);
    QVERIFY(platform_.panelWindow->windowFlags(PanelKind::toast).testFlag(Qt::BypassWindowManagerHint));

    panel_->present();
    panel_->watch();
    QTRY_COMPARE(user_.activeWindow(), static_cast<xcb_window_t>(panel_->winId()));
    QTRY_VERIFY(panel_->isActiveWindow());
    // On its way into its frame it passes the corner, where the toolkit may believe it to be for longer.
    QTRY_COMPARE(user_.placeOf(static_cast<xcb_window_t>(panel_->winId())), kPanel);
    user_.tap(kFirstLetter);
    QTRY_COMPARE(panel_->typed, QStringLiteral("q"));
    QCOMPARE(panel_->losses, 0);
    xcb_set_input_focus(user_.connection(), XCB_INPUT_FOCUS_POINTER_ROOT, terminal_.window(), XCB_CURRENT_TIME);
    xcb_flush(user_.connection());
    QTRY_COMPARE(panel_->losses, 1);
    const auto window = static_cast<xcb_window_t>(panel_->winId());
    QVERIFY(user_.isManaged(window));
    panel_->dismiss();
    // Looked at once: while it lets the panel go, the window manager may call nothing active for a moment.
    QVERIFY(QTest::qWaitFor([&] { return !user_.isManaged(window) && user_.activeWindow() == terminal_.window(); }));
  }

  /// All is typed before this process gets its turn.
  void typingRightAfterTheShortcut() {
    platform_.hotkeys->install([this](std::uint32_t) { panel_->present(); });
    QVERIFY(platform_.hotkeys->registerHotkey(1, kMacSpace, carbon::kControl | carbon::kOption));
    const auto before = static_cast<std::ptrdiff_t>(terminal_.keysReceived().size());
    for (int round = 1; round <= 5; ++round) {
      panel_->typed.clear();
      user_.chord({kCtrl, kAlt}, kSpace);
      for (int letter = 0; letter < 6; ++letter) user_.tap(static_cast<xcb_keycode_t>(kFirstLetter + letter));
      // The shortcut's own key is a letter like any other by now.
      for (int space = 0; space < 3; ++space) user_.tap(kSpace);
      QTRY_COMPARE(panel_->typed, QStringLiteral("qwerty   "));
      QCOMPARE(user_.activeWindow(), terminal_.window());
      panel_->dismiss();
    }
    const auto& keys = terminal_.keysReceived();
    QVERIFY(std::all_of(keys.begin() + before, keys.end(), [](auto key) { return key == kCtrl || key == kAlt; }));
  }

  void shortcutsWorkOverAnOpenPanel() {
    int presses = 0;
    platform_.hotkeys->install([&presses](std::uint32_t) { ++presses; });
    QVERIFY(platform_.hotkeys->registerHotkey(1, kMacSpace, carbon::kControl | carbon::kOption));
    QVERIFY(panel_->present());
    user_.chord({kCtrl, kAlt}, kSpace);
    QTRY_COMPARE(presses, 1);
    QCOMPARE(panel_->typed, QString());
  }

  /// The key is still down when the panel gives the keyboard back, so its release goes to the terminal.
  void theSameShortcutOpensAndCloses() {
    platform_.hotkeys->install(
        [this](std::uint32_t) { panel_->isVisible() ? panel_->dismiss() : void(panel_->present()); });
    QVERIFY(platform_.hotkeys->registerHotkey(1, kMacSpace, carbon::kControl | carbon::kOption));
    for (int round = 0; round < 4; ++round) {
      for (const auto key : {kCtrl, kAlt, kSpace}) user_.key(key, true);
      QTRY_COMPARE(panel_->isVisible(), round % 2 == 0);
      for (const auto key : {kSpace, kAlt, kCtrl}) user_.key(key, false);
      QTest::qWait(2);
    }
  }

  void aHeldShortcutIsNotTypedIntoThePanel() {
    platform_.hotkeys->install([this](std::uint32_t) { panel_->present(); });
    QVERIFY(platform_.hotkeys->registerHotkey(1, kMacSpace, carbon::kControl | carbon::kOption));
    QCOMPARE(QProcess::execute(QStringLiteral("xset"), {QStringLiteral("r"), QStringLiteral("rate"),
                                                        QStringLiteral("30"), QStringLiteral("100")}),
             0);
    for (const auto key : {kCtrl, kAlt, kSpace}) user_.key(key, true);
    QTRY_VERIFY(panel_->isActiveWindow());
    for (const auto key : {kAlt, kCtrl}) user_.key(key, false);
    // Long enough for many repetitions, now without modifiers.
    QTest::qWait(200);
    user_.key(kSpace, false);
    user_.tap(kFirstLetter);
    QTRY_COMPARE(panel_->typed, QStringLiteral("q"));
    QCOMPARE(QProcess::execute(QStringLiteral("xset"), {QStringLiteral("r"), QStringLiteral("rate")}), 0);
  }

  void clickElsewhereIsTheEnd() {
    QVERIFY(panel_->present());
    panel_->watch();
    user_.click(kPanel.x() + 100, kPanel.y() + 100);
    QTRY_COMPARE(panel_->clicks, 1);
    user_.click(150, 150, 5);
    QTest::qWait(50);
    QCOMPARE(panel_->losses, 0);

    // The click reaches what is below it all the same.
    const int clicks = terminal_.clicksReceived();
    user_.click(150, 150);
    user_.click(150, 150);
    QTRY_COMPARE(panel_->losses, 1);
    QTRY_COMPARE(terminal_.clicksReceived(), clicks + 2);
    QTest::qWait(50);
    QCOMPARE(panel_->losses, 1);
  }

  void clickInTheMarginIsElsewhere() {
    QVERIFY(panel_->present());
    panel_->watch();
    user_.click(kPanel.x() + 10, kPanel.y() + 10);
    QTRY_COMPARE(panel_->losses, 1);
  }

  void nothingIsToldAfterStopWatching() {
    QVERIFY(panel_->present());
    panel_->watch();
    platform_.panelWindow->stopWatching(*panel_->windowHandle());
    panel_->sync();
    user_.click(150, 150);
    QTest::qWait(50);
    QCOMPARE(panel_->losses, 0);
  }

  void theNextPanelTakesOver() {
    Panel next(*platform_.panelWindow);
    QVERIFY(panel_->present());
    panel_->watch();
    QVERIFY(next.present());
    QTRY_COMPARE(panel_->losses, 1);
    panel_->dismiss();
    user_.tap(kFirstLetter);
    QTRY_COMPARE(next.typed, QStringLiteral("q"));
    next.dismiss();
  }

  void waitsForAKeyboardThatSomebodyHolds() {
    XClient other;
    QVERIFY(other.takeWholeKeyboard());
    QVERIFY(!panel_->present());
    panel_->watch();
    other.giveWholeKeyboard();
    QTRY_VERIFY(panel_->isActiveWindow());
    user_.tap(kFirstLetter);
    QTRY_COMPARE(panel_->typed, QStringLiteral("q"));
    QCOMPARE(panel_->losses, 0);
  }

  void givesUpWhenTheKeyboardStaysTaken() {
    XClient other;
    QVERIFY(other.takeWholeKeyboard());
    QVERIFY(!panel_->present());
    panel_->watch();
    QTRY_COMPARE(panel_->losses, 1);
  }

  /// A menu has the keyboard while it is open; clicks on it belong to the panel.
  void menusGiveTheKeyboardBack() {
    QVERIFY(panel_->present());
    panel_->watch();
    QMenu menu(panel_.get());
    menu.addAction(QStringLiteral("Edit Command…"));
    menu.popup(QPoint(kPanel.right() - 20, kPanel.bottom() - 20));
    QVERIFY(QTest::qWaitForWindowExposed(&menu));
    user_.click(menu.geometry().center().x(), menu.geometry().center().y());
    QTRY_VERIFY(!menu.isVisible());
    // The keyboard is back a moment later.
    const auto typeOne = [this] {
      user_.tap(kFirstLetter);
      return panel_->typed.contains(u'q');
    };
    QTRY_VERIFY(typeOne());
    QCOMPARE(panel_->losses, 0);
    QCOMPARE(user_.activeWindow(), terminal_.window());
  }

 private:
  XClient terminal_;
  XClient user_;
  Platform platform_;
  std::unique_ptr<Panel> panel_;
};

QTEST_MAIN(X11PanelWindowTest)
#include "x11_panel_window_test.moc"
