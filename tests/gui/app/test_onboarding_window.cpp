#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include "app/onboarding/onboarding_window.h"
#include "app/permissions/permissions_window.h"
#include "core/hotkeys/app_shortcuts.h"
#include "core/ui/toggle_switch.h"
#include "support/app_stage.h"
#include "support/controls.h"
#include "support/pictures.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr Hotkey kUplink{32, 0x1800};
constexpr Hotkey kFiles{37, 0x1800};
constexpr Hotkey kTools{17, 0x1800};
constexpr Hotkey kLauncher{49, 0x1800};

/// The first run over a whole core whose own shortcuts are registered.
struct Stage : AppStage {
  explicit Stage(std::vector<Hotkey> taken = {}) : AppStage(std::move(taken)) {
    for (const AppShortcut& shortcut : kAppShortcuts) world.hotkeys.registerAction(shortcut.hotkey, [] {});
  }

  OnboardingWindow& open() {
    window = std::make_unique<OnboardingWindow>(context);
    window->open();
    return *window;
  }
  void press(Qt::Key key) { QTest::keyClick(focus(), key); }
  QWidget* focus() const { return window->focusWidget(); }
  OnboardingStep step() const { return window->model().step(); }
  void walkTo(OnboardingStep step) {
    while (window->model().step() != step) window->model().next();
  }

  std::unique_ptr<OnboardingWindow> window;
};

/// Where Tab leads to, by name, until it comes round.
QStringList tabOrder(QWidget& window) {
  QStringList names;
  QWidget* const first = window.focusWidget();
  do {
    names.append(window.focusWidget()->accessibleName());
    QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
  } while (window.focusWidget() != first && names.size() < 20);
  return names;
}

}  // namespace

class TestOnboardingWindow : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { wearTheme(); }

  void returnWalksFromTheWelcomeToTheEnd() {
    Stage stage;
    OnboardingWindow& window = stage.open();
    QCOMPARE(window.windowTitle(), u"Welcome"_s);
    QCOMPARE(window.size(), QSize(560, 640));
    for (int step = 0; step < OnboardingModel::kStepCount; ++step) {
      QCOMPARE(static_cast<int>(stage.step()), step);
      QCOMPARE(unnamedControls(window), QStringList());
      shoot(window, u"step-%1"_s.arg(step));
      stage.press(Qt::Key_Return);
    }
    QVERIFY(!window.isVisible());
    QVERIFY(stage.world.settings.value().onboardingCompleted);
    QVERIFY(!stage.world.preferences.value().shareUsageStats);
  }

  void consentIsASwitchThatIsOff() {
    Stage stage;
    OnboardingWindow& window = stage.open();
    stage.walkTo(OnboardingStep::privacy);
    auto* consent = named<ToggleSwitch>(window, u"Share"_s);
    QVERIFY(consent && !consent->isChecked());
    QTest::keyClick(consent, Qt::Key_Space);
    QVERIFY(stage.world.preferences.value().shareUsageStats);
    QTest::keyClick(consent, Qt::Key_Return);
    QCOMPARE(stage.step(), OnboardingStep::permissions);
  }

  void escapeLosesNothing() {
    Stage stage;
    OnboardingWindow& window = stage.open();
    stage.walkTo(OnboardingStep::permissions);
    stage.press(Qt::Key_Escape);
    QVERIFY(!window.isVisible());
    window.open();
    QCOMPARE(stage.step(), OnboardingStep::permissions);
    auto* back = named<QPushButton>(window, u"Back"_s);
    QVERIFY(back);
    QTest::keyClick(back, Qt::Key_Return);
    QCOMPARE(stage.step(), OnboardingStep::privacy);
  }

  void missingPermissionsComeFirst() {
    Stage stage;
    stage.permissions->trusted = false;
    stage.permissions->screenRecording = PermissionState::notGranted;
    OnboardingWindow& window = stage.open();
    stage.walkTo(OnboardingStep::permissions);
    shoot(window, u"permissions-missing"_s);
    QCOMPARE(tabOrder(window), (QStringList{u"Allow Accessibility in Settings"_s,
                                            u"Allow Screen Recording in Settings"_s, u"Back"_s, u"Not Now"_s}));
    stage.press(Qt::Key_Return);
    QCOMPARE(stage.permissions->pages, std::vector{Permission::accessibility});
    stage.permissions->trusted = true;
    stage.world.clock.advance(1s);
    QVERIFY(!named<QPushButton>(window, u"Allow Accessibility"_s));
    stage.permissions->screenRecording = PermissionState::granted;
    stage.world.clock.advance(1s);
    QCOMPARE(stage.step(), OnboardingStep::tryIt);
  }

  void oneClickBindsAFreeCombination() {
    Stage stage({kUplink, kFiles, kTools});
    stage.permissions->trusted = false;
    OnboardingWindow& window = stage.open();
    stage.walkTo(OnboardingStep::permissions);
    QVERIFY(QTest::qWaitForWindowActive(&window));
    shoot(window, u"permissions-taken"_s);
    QCOMPARE(tabOrder(window), (QStringList{u"Allow Accessibility in Settings"_s, u"Use Ctrl+Alt+E for Image to URL"_s,
                                            u"Use Ctrl+Alt+J for File Drop"_s, u"Back"_s, u"Not Now"_s}));
    named<QPushButton>(window, u"Use Ctrl+Alt+E"_s)->setFocus();
    stage.press(Qt::Key_Return);
    QVERIFY(stage.world.hotkeys.isRegistered(u"uplink"_s));
    QCOMPARE(stage.focus()->accessibleName(), u"Use Ctrl+Alt+J for File Drop"_s);
    stage.press(Qt::Key_Return);
    QVERIFY(stage.world.hotkeys.isRegistered(u"bulk-upload"_s));
    QVERIFY(!named<QPushButton>(window, u"Use"_s));
    QCOMPARE(unnamedControls(window), QStringList());
    shoot(window, u"permissions-bound"_s);
  }

  void tryingOutIsNoticed() {
    Stage stage;
    OnboardingWindow& window = stage.open();
    stage.walkTo(OnboardingStep::tryIt);
    QVERIFY(qobject_cast<QLineEdit*>(stage.focus()));
    QVERIFY(!named<QPushButton>(window, u"Open the Launcher"_s));
    stage.window->model().launcherShown();
    stage.world.registry.summon(u"frequent-clis"_s);
    QTest::keyClicks(stage.focus(), u"claude --continue"_s);
    shoot(window, u"tried"_s);
    stage.press(Qt::Key_Return);
    QCOMPARE(stage.step(), OnboardingStep::done);
  }

  void aButtonStandsInForARefusedLauncherShortcut() {
    Stage stage({kLauncher});
    OnboardingWindow& window = stage.open();
    stage.walkTo(OnboardingStep::tryIt);
    shoot(window, u"try-refused"_s);
    stage.press(Qt::Key_Return);
    QCOMPARE(stage.launcher.shown.size(), 1);
    QCOMPARE(stage.step(), OnboardingStep::tryIt);
    stage.window->model().launcherShown();
    stage.press(Qt::Key_Return);
    QCOMPARE(stage.step(), OnboardingStep::done);
  }

  void waylandIsToldInBothWindows() {
    Stage stage;
    stage.permissions->screenRecording = PermissionState::unavailable;
    stage.permissions->shortcuts =
        u"Wayland leaves global shortcuts to the desktop: “vantle doctor” prints what to paste there."_s;
    OnboardingWindow& window = stage.open();
    stage.walkTo(OnboardingStep::permissions);
    shoot(window, u"permissions-wayland"_s);
    PermissionsWindow permissions(stage.context);
    permissions.open();
    shoot(permissions, u"window-wayland"_s);
  }

  void permissionsWindowFollowsWhileVisible() {
    Stage stage;
    stage.permissions->trusted = false;
    PermissionsWindow window(stage.context);
    QCOMPARE(window.windowTitle(), u"Permissions"_s);
    const auto readsWithin = [&](std::chrono::milliseconds time) {
      const int before = stage.permissions->reads;
      stage.world.clock.advance(time);
      return stage.permissions->reads - before;
    };
    QCOMPARE(readsWithin(1min), 0);
    window.open();
    QCOMPARE(unnamedControls(window), QStringList());
    shoot(window, u"window-missing"_s);
    QVERIFY(named<QPushButton>(window, u"Allow Accessibility"_s));
    stage.permissions->trusted = true;
    stage.world.clock.advance(1s);
    QVERIFY(!named<QPushButton>(window, u"Allow Accessibility"_s));
    shoot(window, u"window-granted"_s);
    named<QPushButton>(window, u"Change shortcuts"_s)->click();
    QCOMPARE(stage.opener.opened, QStringList{u"tab 2"_s});
    QTest::keyClick(&window, Qt::Key_Escape);
    QVERIFY(!window.isVisible());
    QCOMPARE(readsWithin(1min), 0);
  }
};

QTEST_MAIN(TestOnboardingWindow)
#include "test_onboarding_window.moc"
