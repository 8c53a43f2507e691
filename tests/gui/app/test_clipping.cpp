#include <QApplication>
#include <QTest>

#include "app/onboarding/onboarding_window.h"
#include "app/permissions/permissions_window.h"
#include "app/settings/settings_window.h"
#include "app/shortcuts/shortcuts_window.h"
#include "app/usage/usage_window.h"
#include "core/ui/control_style.h"
#include "core/ui/theme.h"
#include "core/ui/theme_palette.h"
#include "support/app_stage.h"
#include "support/clipping.h"

using namespace Qt::StringLiterals;

/// No text is cut off in any window. It runs with the usual font, without that font, and with larger text: see the
/// list of tests.
class TestClipping : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    QApplication::setStyle(new ControlStyle);
    QApplication::setFont(Theme::detailFont());
  }

  void theSettings_data() { bothAppearances(); }

  void theSettings() {
    takeAppearance();
    AppStage stage({{36, 0x1800}});
    SettingsSelection selection;
    SettingsWindow window(stage.context, selection);
    for (int tab = 0; tab < 6; ++tab) {
      selection.setTab(static_cast<SettingsTab>(tab));
      expectWhole(window);
    }
    selection.setTab(SettingsTab::tools);
    for (const auto& tool : stage.world.registry.tools()) {
      selection.setToolID(tool->id());
      expectWhole(window);
    }
  }

  void theFirstRun_data() { bothAppearances(); }

  void theFirstRun() {
    takeAppearance();
    AppStage stage({{36, 0x1800}});
    OnboardingWindow window(stage.context);
    for (int step = 0; step < OnboardingModel::kStepCount; ++step) {
      expectWhole(window);
      window.model().next();
    }
  }

  void theOthers_data() { bothAppearances(); }

  void theOthers() {
    takeAppearance();
    AppStage stage({{36, 0x1800}});
    ShortcutsWindow shortcuts(stage.context);
    expectWhole(shortcuts);
    PermissionsWindow permissions(stage.context);
    expectWhole(permissions);
    UsageWindow usage(stage.services.quota, stage.services.quotaClient);
    expectWhole(usage);
  }

 private:
  static void bothAppearances() {
    QTest::addColumn<bool>("dark");
    QTest::newRow("light") << false;
    QTest::newRow("dark") << true;
  }

  static void takeAppearance() {
    QFETCH(bool, dark);
    QApplication::setPalette(themePalette(dark ? Theme::darkTheme() : Theme::light()));
  }

  static void expectWhole(TitledWindow& window) {
    window.open();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QTRY_VERIFY2_WITH_TIMEOUT(clippedTexts(window).isEmpty(), qPrintable(clippedTexts(window).join(u'\n')), 1000);
  }
};

QTEST_MAIN(TestClipping)
#include "test_clipping.moc"
