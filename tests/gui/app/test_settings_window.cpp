#include <QPushButton>
#include <QTest>

#include "app/onboarding_window.h"
#include "app/settings/settings_window.h"
#include "core/ui/hotkey_recorder_view.h"
#include "core/ui/toggle_switch.h"
#include "support/app_stage.h"
#include "support/controls.h"

using namespace Qt::StringLiterals;

namespace {

/// A settings window over a whole core.
struct Stage : AppStage {
  using AppStage::AppStage;

  SettingsSelection selection;
  SettingsWindow window{context, selection};

  void show(SettingsTab tab) {
    selection.setTab(tab);
    window.open();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
  }
};

}  // namespace

class TestSettingsWindow : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void everyControlHasAName() {
    Stage stage;
    for (int tab = 0; tab < 6; ++tab) {
      stage.show(static_cast<SettingsTab>(tab));
      QCOMPARE(unnamedControls(stage.window), QStringList());
    }
  }

  void aRecorderPutAwayMidwayGivesTheShortcutsBack() {
    Stage stage;
    stage.show(SettingsTab::shortcuts);
    auto* button = named<QPushButton>(stage.window, u"Shortcut of Image to URL"_s);
    QVERIFY(button);
    QTest::mouseClick(button, Qt::LeftButton);
    QTest::keyClick(button, Qt::Key_P, Qt::ControlModifier | Qt::AltModifier);
    QCOMPARE(stage.sounds->beeps, 1);
    QVERIFY(!stage.world.hotkeys.isRegistered(u"uplink"_s));
    stage.window.hide();
    QVERIFY(stage.world.hotkeys.isRegistered(u"uplink"_s));
  }

  void toolPageSwitchesTheTool() {
    Stage stage;
    stage.selection.setToolID(u"feedback"_s);
    stage.show(SettingsTab::tools);
    auto* enabled = named<ToggleSwitch>(stage.window, u"Feedback enabled"_s);
    QVERIFY(enabled);
    enabled->click();
    QVERIFY(!stage.world.registry.isEnabled(u"feedback"_s));
    QVERIFY(!stage.world.hotkeys.isRegistered(u"feedback"_s));
    stage.world.registry.setEnabled(u"feedback"_s, true);
    QVERIFY(enabled->isChecked());
  }

  void onboardingKeepsEveryStep() {
    Stage stage({{36, 0x1800}});
    OnboardingWindow window(stage.context);
    window.open(OnboardingWindow::Step::welcome);
    QCOMPARE(window.windowTitle(), u"Welcome"_s);
    QCOMPARE(window.size(), QSize(560, 640));
    QCOMPARE(unnamedControls(window), QStringList());
    auto* consent = named<ToggleSwitch>(window, u"Share"_s);
    QVERIFY(consent && !consent->isChecked());
    consent->click();
    QVERIFY(stage.world.preferences.value().shareUsageStats);

    const auto press = [&](const QString& text) {
      for (auto* button : window.findChildren<QPushButton*>())
        if (button->isVisible() && button->text() == text) button->click();
    };
    press(u"Continue"_s);
    QVERIFY(stage.world.settings.value().privacyAccepted && stage.world.settings.value().onboardingReachedPermissions);
    QVERIFY(!stage.world.settings.value().onboardingCompleted);
    press(u"Done"_s);
    QVERIFY(stage.world.settings.value().onboardingCompleted);
    QVERIFY(!window.isVisible());
  }
};

QTEST_MAIN(TestSettingsWindow)
#include "test_settings_window.moc"
