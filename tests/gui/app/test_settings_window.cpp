#include <QAbstractScrollArea>
#include <QAccessible>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include "app/onboarding_window.h"
#include "app/settings/settings_window.h"
#include "core/ui/hotkey_recorder_view.h"
#include "core/ui/toggle_switch.h"
#include "support/world.h"

using namespace Qt::StringLiterals;

namespace {

/// A settings window over a whole core.
struct Stage {
  explicit Stage(std::vector<Hotkey> taken = {}) {
    world.hotkeyBackend.taken = std::move(taken);
    world.bootstrap();
    auto ownSounds = std::make_unique<FakeSounds>();
    sounds = ownSounds.get();
    world.system.sounds = std::move(ownSounds);
    world.system.permissions = std::make_unique<FakePermissions>();
  }

  World world;
  FakeSounds* sounds = nullptr;
  FakeSettingsOpener opener;
  FakeLauncherOpener launcher;
  AppContext context{world.folders, world.system,   world.clock,  world.settings, world.preferences, world.network,
                     world.hotkeys, world.registry, world.toasts, opener,         launcher};
  SettingsSelection selection;
  SettingsWindow window{context, selection};

  void show(SettingsTab tab) {
    selection.setTab(tab);
    window.open();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
  }
};

/// The visible controls that a screen reader could not name.
QStringList unnamedControls(QWidget& window) {
  QStringList unnamed;
  for (const QWidget* widget : window.findChildren<QWidget*>()) {
    const bool isControl = widget->focusPolicy() != Qt::NoFocus && widget->isVisible();
    if (!isControl || qobject_cast<const QAbstractScrollArea*>(widget) || qobject_cast<const QLabel*>(widget)) continue;
    if (qobject_cast<const QLineEdit*>(widget) && widget->objectName() == "qt_spinbox_lineedit"_L1) continue;
    QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(const_cast<QWidget*>(widget));
    if (!interface || interface->text(QAccessible::Name).isEmpty())
      unnamed.append(QString::fromLatin1(widget->metaObject()->className()));
  }
  return unnamed;
}

template <class Control>
Control* named(QWidget& window, const QString& start) {
  for (Control* control : window.findChildren<Control*>())
    if (control->isVisible() && control->accessibleName().startsWith(start)) return control;
  return nullptr;
}

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
