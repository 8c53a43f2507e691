#include <QPushButton>
#include <QTest>

#include "app/onboarding/onboarding_window.h"
#include "app/permissions/permissions_window.h"
#include "core/hotkeys/app_shortcuts.h"
#include "core/ui/toggle_switch.h"
#include "support/app_stage.h"
#include "support/controls.h"
#include "support/wear_theme.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// The first run over a whole core whose own shortcuts are registered.
struct Stage : AppStage {
  Stage() {
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

  void missingPermissionsComeFirst() {
    Stage stage;
    stage.permissions->trusted = false;
    stage.permissions->screenRecording = PermissionState::notGranted;
    OnboardingWindow& window = stage.open();
    stage.walkTo(OnboardingStep::permissions);
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

  void whatTheDesktopKeepsIsSaid() {
    Stage stage;
    stage.permissions->shortcuts = u"Wayland leaves them to the desktop."_s;
    OnboardingWindow& window = stage.open();
    stage.walkTo(OnboardingStep::permissions);
    QVERIFY(isShown(window, u"Limited"_s));
    stage.walkTo(OnboardingStep::tryIt);
    QVERIFY(isShown(window, u"Open the launcher"_s) && isShown(window, u"Pick Frequent CLIs there"_s));
    // The portal has answered.
    stage.permissions->shortcuts.clear();
    stage.world.hotkeyBackend.trigger = u"Super+K"_s;
    stage.world.hotkeyBackend.giveMore();
    QVERIFY(isShown(window, u"Press Super+K"_s) && isShown(window, u"Press Super+K, then Return"_s));
    stage.walkTo(OnboardingStep::done);
    QVERIFY(isShown(window, u"All tools in one grid. Press Super+K."_s));
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
    QVERIFY(named<QPushButton>(window, u"Allow Accessibility"_s));
    stage.permissions->trusted = true;
    stage.world.clock.advance(1s);
    QVERIFY(!named<QPushButton>(window, u"Allow Accessibility"_s));
    named<QPushButton>(window, u"Change shortcuts"_s)->click();
    QCOMPARE(stage.opener.opened, QStringList{u"tab 2"_s});
    QTest::keyClick(&window, Qt::Key_Escape);
    QVERIFY(!window.isVisible());
    QCOMPARE(readsWithin(1min), 0);
  }
};

QTEST_MAIN(TestOnboardingWindow)
#include "test_onboarding_window.moc"
