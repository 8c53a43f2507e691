#include <QApplication>
#include <QPushButton>
#include <QTest>

#include "app/settings/settings_window.h"
#include "core/ui/control_style.h"
#include "support/app_stage.h"
#include "support/controls.h"

using namespace Qt::StringLiterals;

namespace {

constexpr Hotkey kUplink{32, 0x1800};
constexpr Hotkey kPromptify{35, 0x1800};
constexpr Hotkey kFree{14, 0x1800};

/// The shortcuts page over a whole core.
struct Stage : AppStage {
  using AppStage::AppStage;

  SettingsSelection selection;
  SettingsWindow window{context, selection};

  void show() {
    selection.setTab(SettingsTab::shortcuts);
    window.open();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
  }
  QPushButton* button(const QString& name) { return named<QPushButton>(window, name); }
  void click(const QString& name) {
    QPushButton* found = button(name);
    QVERIFY2(found, qPrintable(name));
    QTest::mouseClick(found, Qt::LeftButton);
  }
  bool says(const QString& text) { return isShown(window, text); }
  std::optional<Hotkey> binding(const char* tool) { return world.hotkeys.binding(QString::fromLatin1(tool)); }
};

}  // namespace

class TestShortcutsPage : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { QApplication::setStyle(new ControlStyle); }

  void aResetShowsOnlyWhereSomethingDiffers() {
    Stage stage;
    stage.show();
    QVERIFY(!stage.button(u"Reset shortcut of Ask AI"_s));
    stage.world.hotkeys.setHotkey(std::nullopt, u"quick-question"_s);
    stage.click(u"Reset shortcut of Ask AI"_s);
    QCOMPARE(stage.binding("quick-question"), (Hotkey{40, 0x1800}));
    QVERIFY(!stage.button(u"Reset shortcut of Ask AI"_s));
    // The keyboard stays in the row.
    QTRY_VERIFY(stage.window.focusWidget());
    QVERIFY(stage.window.focusWidget()->accessibleName().startsWith(u"Shortcut of Ask AI"_s));
  }

  void aTakenCombinationOffersAFreeOne() {
    Stage stage({kUplink});
    stage.show();
    QVERIFY(stage.says(u"⌃⌥U is taken by another program."_s));
    stage.click(u"Use Ctrl+Alt+E for Image to URL"_s);
    QCOMPARE(stage.binding("uplink"), kFree);
    QVERIFY(stage.world.hotkeys.isRegistered(u"uplink"_s));
    QVERIFY(!stage.says(u"is taken by"_s));
  }

  void aCollisionIsNamedOnBothRowsAndEndsByItself() {
    Stage stage;
    stage.world.hotkeys.setHotkey(kFree, u"uplink"_s);
    stage.world.hotkeys.setHotkey(kUplink, u"promptify"_s);
    stage.show();
    stage.click(u"Reset shortcut of Image to URL"_s);
    QVERIFY(stage.says(u"is also the shortcut of Image to URL"_s));
    QVERIFY(stage.says(u"is also the shortcut of Image to Prompt"_s));
    QVERIFY(!stage.world.hotkeys.isRegistered(u"uplink"_s));
    stage.click(u"Reset shortcut of Image to Prompt"_s);
    QVERIFY(!stage.says(u"is also the shortcut"_s));
    QVERIFY(stage.world.hotkeys.isRegistered(u"uplink"_s) && stage.world.hotkeys.isRegistered(u"promptify"_s));
  }

  void saysThatTheApplicationsOwnNeverReachATool() {
    Stage stage;
    stage.world.hotkeys.registerAction({4, 0x1800}, [] {});
    stage.show();
    stage.click(u"Shortcut of Image to URL"_s);
    QTest::keyClick(stage.window.focusWidget(), Qt::Key_H, Qt::ControlModifier | Qt::AltModifier);
    QCOMPARE(stage.binding("uplink"), (Hotkey{4, 0x1800}));
    QVERIFY(stage.says(u"so it never reaches this tool"_s));
    QVERIFY(!stage.button(u"Use "_s));
  }

  void everyRowSaysWhatTheDesktopCallsIt() {
    const Hotkey own{49, 0x1800};
    Stage stage({own});
    stage.world.hotkeys.registerAction(own, [] {});
    stage.show();
    QVERIFY(stage.says(u"⌃⌥Space is taken by another program. The menu leads there too."_s));
    stage.world.hotkeyBackend.taken = {};
    stage.world.hotkeyBackend.trigger = u"Super+K"_s;
    stage.world.hotkeyBackend.giveMore();
    int rows = 0;
    for (const QLabel* label : stage.window.findChildren<QLabel*>())
      if (label->text() == u"Your desktop has it as: Super+K"_s) ++rows;
    QCOMPARE(rows, 18);
  }

  void resetAllAsksFirst() {
    Stage stage;
    stage.world.hotkeys.setHotkey(kUplink, u"promptify"_s);
    stage.world.hotkeys.setHotkey(kPromptify, u"uplink"_s);
    stage.show();
    stage.click(u"Reset all shortcuts"_s);
    QTest::keyClick(stage.window.focusWidget(), Qt::Key_Escape);
    QVERIFY(stage.window.isVisible());
    QCOMPARE(stage.binding("uplink"), kPromptify);
    stage.click(u"Reset all shortcuts"_s);
    stage.click(u"Reset every shortcut now"_s);
    QCOMPARE(stage.binding("uplink"), kUplink);
    QVERIFY(stage.world.settings.value().hotkeys.empty());
    QVERIFY(stage.world.hotkeys.isRegistered(u"uplink"_s) && stage.world.hotkeys.isRegistered(u"promptify"_s));
    QVERIFY(!stage.button(u"Reset all shortcuts"_s)->isEnabled());
  }
};

QTEST_MAIN(TestShortcutsPage)
#include "test_shortcuts_page.moc"
