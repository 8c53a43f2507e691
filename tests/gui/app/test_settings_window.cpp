#include <QListWidget>
#include <QPushButton>
#include <QScrollBar>

#include "core/ui/hotkey_recorder_view.h"
#include "core/ui/settings_form.h"
#include "core/ui/toggle_switch.h"
#include "gui/app/settings_stage.h"

using namespace Qt::StringLiterals;

class TestSettingsWindow : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void tabsAreChosenByKeys() {
    SettingsStage stage;
    stage.show(SettingsTab::general);
    QCOMPARE(stage.focusedName(), u"Settings tabs"_s);
    stage.key(Qt::Key_Down);
    QCOMPARE(stage.selection.tab(), SettingsTab::tools);
    stage.key(Qt::Key_Tab);
    QCOMPARE(stage.focusedName(), u"Tools"_s);
    stage.key(Qt::Key_4, Qt::ControlModifier);
    QCOMPARE(stage.selection.tab(), SettingsTab::notifications);
    QCOMPARE(stage.focusedName(), u"Settings tabs"_s);
    stage.key(Qt::Key_Tab);
    QCOMPARE(stage.focusedName(), u"How long a toast stays"_s);
  }

  void opensOnTheSameTabAndForgetsTheRest() {
    SettingsStage stage;
    stage.show(SettingsTab::tools);
    const QSize size = stage.window.size();
    stage.window.resize(size.width(), 300);
    stage.selection.setToolID(u"feedback"_s);
    stage.selection.setTab(SettingsTab::launcher);
    auto* page = stage.window.findChildren<SettingsPage*>().last();
    // The page goes where the keyboard goes.
    auto& reset = stage.control<QWidget>(u"Arrange your grid"_s);
    reset.setFocus(Qt::TabFocusReason);
    QTRY_VERIFY(page->verticalScrollBar()->value() > 0);
    stage.window.close();
    stage.window.open();
    QCOMPARE(stage.selection.tab(), SettingsTab::launcher);
    QCOMPARE(stage.window.size(), size);
    QCOMPARE(page->verticalScrollBar()->value(), 0);
    QCOMPARE(stage.focusedName(), u"Settings tabs"_s);
    QCOMPARE(stage.selection.toolID(), QString());
  }

  void aRecorderPutAwayMidwayGivesTheShortcutsBack() {
    SettingsStage stage;
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
    SettingsStage stage;
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
};

QTEST_MAIN(TestSettingsWindow)
#include "test_settings_window.moc"
