#include <QLabel>
#include <QPushButton>
#include <QSpinBox>

#include "app/settings/arrange_grid.h"
#include "core/ui/launcher/tool_grid.h"
#include "core/ui/settings_form.h"
#include "core/ui/toggle_switch.h"
#include "gui/app/settings_stage.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

class FakeLoginItem final : public LoginItem {
 public:
  State state() const override { return now; }
  std::expected<void, LoginItemError> setEnabled(bool enabled) override {
    if (!refusal.isEmpty()) return std::unexpected(LoginItemError{refusal});
    now = enabled ? wanted : State::off;
    return {};
  }
  void openApproval() override { ++approvals; }

  State now = State::off;
  /// What switching on leads to.
  State wanted = State::on;
  QString refusal;
  int approvals = 0;
};

struct GeneralStage : SettingsStage {
  GeneralStage() {
    auto fake = std::make_unique<FakeLoginItem>();
    item = fake.get();
    world.system.loginItem = std::move(fake);
    show(SettingsTab::general);
  }
  ToggleSwitch& loginSwitch() { return control<ToggleSwitch>(u"Open at login"_s); }
  QString remark() {
    const QWidget* section = &loginSwitch();
    while (!qobject_cast<const SettingsSection*>(section)) section = section->parentWidget();
    for (const RowRemark* label : section->findChildren<RowRemark*>())
      if (label->isVisible()) return label->text();
    return {};
  }

  FakeLoginItem* item;
};

struct LauncherPageStage : SettingsStage {
  LauncherPageStage() {
    show(SettingsTab::launcher);
    grid = window.findChild<ToolGrid*>();
    window.findChild<ArrangeGrid*>()->setFocus();
  }
  ToolTile& tile(QLatin1StringView id) const { return *grid->tile(id); }
  qsizetype place(const QString& id) const { return world.order().indexOf(id); }

  ToolGrid* grid;
};

}  // namespace

class TestSettingsPages : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void openAtLoginIsSwitchedAndFollowed() {
    GeneralStage stage;
    stage.loginSwitch().click();
    QCOMPARE(stage.item->now, LoginItem::State::on);
    QVERIFY(stage.loginSwitch().isChecked());
    // Changed in the system's own settings meanwhile.
    stage.item->now = LoginItem::State::off;
    QEvent activation(QEvent::WindowActivate);
    QCoreApplication::sendEvent(&stage.window, &activation);
    QVERIFY(!stage.loginSwitch().isChecked());
    stage.show(SettingsTab::privacy);
    stage.item->now = LoginItem::State::on;
    stage.show(SettingsTab::general);
    QVERIFY(stage.loginSwitch().isChecked());
  }

  void openAtLoginSaysWhatStandsInTheWay() {
    GeneralStage stage;
    QCOMPARE(stage.remark(), QString());
    stage.item->refusal = u"the disk is full"_s;
    stage.loginSwitch().click();
    QVERIFY(!stage.loginSwitch().isChecked());
    QCOMPARE(stage.remark(), u"Open at login could not be changed: the disk is full"_s);
    stage.item->refusal.clear();
    stage.item->wanted = LoginItem::State::awaitsApproval;
    stage.loginSwitch().click();
    QVERIFY(stage.loginSwitch().isChecked());
    QVERIFY(stage.remark().startsWith(u"Waits for your consent"_s));
    stage.control<QPushButton>(u"Allow opening at login in Settings"_s).click();
    QCOMPARE(stage.item->approvals, 1);
    stage.item->now = LoginItem::State::unavailable;
    stage.show(SettingsTab::privacy);
    stage.show(SettingsTab::general);
    QVERIFY(!stage.loginSwitch().isEnabled());
    QVERIFY(!stage.remark().isEmpty());
  }

  void theExampleToastUsesTheSettings() {
    SettingsStage stage;
    stage.show(SettingsTab::notifications);
    stage.control<QSpinBox>(u"How long a toast stays"_s).setValue(7);
    stage.control<QPushButton>(u"Show an Example"_s).click();
    QCOMPARE(stage.world.toasts.shown.back().second, 7000ms);
    QVERIFY(stage.world.toasts.shown.back().first.completes);
    QVERIFY(stage.world.toasts.shown.back().first.detail.startsWith(u"Swipe"_s));
    stage.control<ToggleSwitch>(u"Swipe to dismiss"_s).click();
    stage.control<ToggleSwitch>(u"Sound when a task is finished"_s).click();
    stage.control<QPushButton>(u"Show an Example"_s).click();
    QVERIFY(!stage.world.toasts.shown.back().first.detail.startsWith(u"Swipe"_s));
    const AppPreferences saved(stage.world.folders.file(u"app-settings.json"_s));
    QVERIFY(!saved.value().swipeToDismiss && !saved.value().soundOnComplete);
    QCOMPARE(saved.value().toastDuration, 7.0);
  }

  void tilesAreDraggedToOtherPlaces() {
    LauncherPageStage stage;
    stage.world.registry.setSortMode(ToolSortMode::alphabetical);
    ToolTile& carried = stage.tile("ai-text-transform"_L1);
    QCOMPARE(stage.place(u"ai-text-transform"_s), 0);
    QTest::mousePress(&carried, Qt::LeftButton, {}, {30, 60});
    const QPoint goal = stage.tile("feedback"_L1).mapToGlobal(QPoint(30, 60));
    const qsizetype place = stage.place(u"feedback"_s);
    QTest::mouseMove(&carried, carried.mapFromGlobal(goal));
    // The others make room while it still hangs on the pointer.
    QCOMPARE(stage.place(u"ai-text-transform"_s), place);
    QCOMPARE(carried.mapToGlobal(QPoint(30, 60)), goal);
    QTest::mouseRelease(&carried, Qt::LeftButton, {}, {30, 60});
    QCOMPARE(stage.world.registry.sortMode(), ToolSortMode::manual);
    QCOMPARE(
        SettingsStore(stage.world.folders.file(u"settings.json"_s)).value().toolOrder.indexOf(u"ai-text-transform"_s),
        place);
  }

  void keysCarryPinAndPlace() {
    LauncherPageStage stage;
    stage.key(Qt::Key_Right);
    stage.key(Qt::Key_Right, Qt::ControlModifier);
    QCOMPARE(stage.place(u"uplink"_s), 2);
    stage.key(Qt::Key_Down, Qt::ControlModifier);
    QCOMPARE(stage.place(u"uplink"_s), 5);
    stage.key(Qt::Key_2);
    QCOMPARE(stage.place(u"uplink"_s), 1);
    stage.key(Qt::Key_P, Qt::ControlModifier);
    QCOMPARE(stage.place(u"uplink"_s), 0);
    QVERIFY(stage.tile("uplink"_L1).face().isPinned);
    QVERIFY(stage.tile("uplink"_L1).accessibleDescription().contains(u"Pinned to the front of the grid"_s));
    stage.key(Qt::Key_PageDown);
    stage.key(Qt::Key_9);
    QCOMPARE(stage.sounds->beeps, 1);
    stage.key(Qt::Key_Tab);
    QVERIFY(!stage.tile("uplink"_L1).face().isSelected && stage.window.isVisible());
    stage.world.registry.setEnabled(u"uplink"_s, false);
    QVERIFY(!stage.tile("uplink"_L1).face().obstacle.isEmpty());
    stage.key(Qt::Key_Escape);
    QVERIFY(!stage.window.isVisible());
  }

  void resettingAsksFirst() {
    LauncherPageStage stage;
    auto& reset = stage.control<QPushButton>(u"Reset the arrangement"_s);
    QVERIFY(!reset.isEnabled());
    stage.world.registry.togglePin(u"uplink"_s);
    QVERIFY(reset.isEnabled());
    const auto ask = [&] {
      reset.setFocus();
      stage.key(Qt::Key_Space);
    };
    ask();
    QCOMPARE(stage.focusedName(), u"Keep the arrangement"_s);
    stage.key(Qt::Key_Space);
    ask();
    stage.key(Qt::Key_Escape);
    QVERIFY(stage.window.isVisible() && reset.isVisible());
    ask();
    stage.window.findChild<ArrangeGrid*>()->setFocus();
    QVERIFY(reset.isVisible());
    QVERIFY(stage.world.registry.isPinned(u"uplink"_s));
    ask();
    stage.control<QPushButton>(u"Reset the arrangement now"_s).click();
    QVERIFY(!stage.world.registry.isPinned(u"uplink"_s));
    QVERIFY(reset.isVisible() && !reset.isEnabled());
  }

  void sortModesAreOneStopForTheKeyboard() {
    SettingsStage stage;
    stage.show(SettingsTab::launcher);
    stage.key(Qt::Key_Tab);
    QCOMPARE(stage.focusedName(), u"Manual"_s);
    stage.key(Qt::Key_Right);
    QCOMPARE(stage.world.registry.sortMode(), ToolSortMode::mostUsed);
    QCOMPARE(stage.focusedName(), u"Most Used"_s);
    stage.key(Qt::Key_Tab);
    QCOMPARE(stage.focusedName(), u"Arrange your grid"_s);
    stage.world.registry.setSortMode(ToolSortMode::recent);
    QVERIFY(stage.control<QAbstractButton>(u"Recently Used"_s).isChecked());
  }

  void theToolsListTakesTypeAheadAndWhatIsOpened() {
    SettingsStage stage;
    stage.selection.setToolID(u"feedback"_s);
    stage.show(SettingsTab::tools);
    QCOMPARE(stage.focusedName(), u"Tools"_s);
    QVERIFY(named<ToggleSwitch>(stage.window, u"Feedback enabled"_s));
    stage.key(Qt::Key_V);
    stage.key(Qt::Key_I);
    QCOMPARE(stage.selection.toolID(), u"vibe-history"_s);
    QVERIFY(named<ToggleSwitch>(stage.window, u"Vibe History enabled"_s));
  }
};

QTEST_MAIN(TestSettingsPages)
#include "test_settings_pages.moc"
