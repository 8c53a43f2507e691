#include <QApplication>
#include <QPushButton>
#include <QTest>

#include "app/shortcuts/key_button.h"
#include "app/shortcuts/keyboard_view.h"
#include "app/shortcuts/shortcut_list.h"
#include "app/shortcuts/shortcut_popover.h"
#include "app/shortcuts/shortcuts_window.h"
#include "core/ui/control_style.h"
#include "core/ui/theme.h"
#include "support/app_stage.h"
#include "support/controls.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr Qt::KeyboardModifiers kControlOption = Qt::ControlModifier | Qt::AltModifier;

/// The window over a whole core; `held` is what the user's hand holds.
struct Stage : AppStage {
  using AppStage::AppStage;

  Qt::KeyboardModifiers held = Qt::NoModifier;
  ShortcutsWindow window{context, [this] { return held; }};

  void show() {
    window.open();
    QVERIFY(QTest::qWaitForWindowActive(&window));
  }
  /// As if the modifiers had just been pressed or released.
  void hold(Qt::KeyboardModifiers modifiers) {
    held = modifiers;
    QTest::keyEvent(QTest::Press, window.windowHandle(), Qt::Key_Control);
  }
  KeyButton* key(const QString& name) { return named<KeyButton>(window, name); }
  ShortcutPopover* popover() { return window.findChild<ShortcutPopover*>(); }
  QStringList popoverTexts() {
    QStringList texts;
    for (const QLabel* label : popover()->findChildren<QLabel*>())
      if (label->isVisible()) texts.append(label->text());
    return texts;
  }
  bool isLit(const QString& name) { return key(name)->face().light == KeyLight::lit; }
};

}  // namespace

class TestShortcutsWindow : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { QApplication::setStyle(new ControlStyle); }

  void lightsFollowTheHand() {
    Stage stage;
    stage.show();
    stage.hold(kControlOption);
    QVERIFY(stage.isLit(u"K, Ctrl+Alt"_s) && stage.isLit(u"Space, Ctrl+Alt"_s));
    stage.hold(Qt::ControlModifier);
    QVERIFY(!stage.isLit(u"K, Ctrl+Alt"_s));
    // A release that another program's grab has swallowed.
    stage.hold(kControlOption);
    stage.held = Qt::NoModifier;
    QTRY_VERIFY(!stage.isLit(u"K, Ctrl+Alt"_s));
  }

  void noLightIsLeftBehind() {
    Stage stage;
    stage.show();
    stage.hold(kControlOption);
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    QVERIFY(!stage.isLit(u"K, Ctrl+Alt"_s));
    // Nor does a window that is not active look at the keys of others.
    QTest::keyEvent(QTest::Press, other.windowHandle(), Qt::Key_Control);
    QVERIFY(!stage.isLit(u"K, Ctrl+Alt"_s));
    stage.window.activateWindow();
    QTRY_VERIFY(stage.isLit(u"K, Ctrl+Alt"_s));
    KeyButton* key = stage.key(u"K, Ctrl+Alt"_s);
    stage.window.close();
    QCOMPARE(key->face().light, KeyLight::rest);
  }

  void aToolComesWhenTheWindowHasGone() {
    Stage stage;
    stage.show();
    stage.hold(kControlOption);
    stage.world.hotkeyBackend.press({40, 0x1800});
    QVERIFY(!stage.window.isVisible());
    stage.world.clock.advance(119ms);
    QCOMPARE(stage.world.activated, QStringList());
    stage.world.clock.advance(1ms);
    QCOMPARE(stage.world.activated, QStringList{u"quick-question"_s});
  }

  void returnStartsLikeTheShortcut() {
    Stage stage;
    stage.show();
    stage.key(u"K, Ctrl+Alt"_s)->setFocus(Qt::TabFocusReason);
    QTest::keyClick(stage.window.focusWidget(), Qt::Key_Right);
    QTest::keyClick(stage.window.focusWidget(), Qt::Key_Return);
    QVERIFY(!stage.window.isVisible());
    stage.world.clock.advance(120ms);
    QCOMPARE(stage.world.activated, QStringList{u"bulk-upload"_s});

    stage.show();
    auto* row = named<ShortcutRow>(stage.window, u"Tools, "_s);
    row->setFocus(Qt::TabFocusReason);
    QTest::keyClick(row, Qt::Key_Return);
    QVERIFY(!stage.window.isVisible());
    stage.world.clock.advance(120ms);
    QCOMPARE(stage.opener.opened, QStringList{u"tab 1"_s});
  }

  void thePopoverTellsAndLeads() {
    Stage stage;
    stage.show();
    QVERIFY(!stage.popover()->isVisible());
    QTest::mouseMove(stage.key(u"K, Ctrl+Alt"_s));
    QTRY_VERIFY(stage.popoverTexts().contains(u"Answers a quick question without leaving what you are doing."_s));
    stage.world.setOnline(false);
    QVERIFY(stage.popoverTexts().contains(u"Needs internet — offline right now"_s));
    stage.world.setOnline(true);
    QVERIFY(!stage.popoverTexts().contains(u"Needs internet — offline right now"_s));
    QTest::mouseMove(&stage.window, QPoint(4, 4));
    QTRY_VERIFY(!stage.popover()->isVisible());

    QTest::mouseClick(stage.key(u"K, Ctrl+Alt"_s), Qt::LeftButton);
    QVERIFY(stage.popover()->isVisible());
    QTest::mouseClick(named<QPushButton>(stage.window, u"Change Ask AI…"_s), Qt::LeftButton);
    QCOMPARE(stage.opener.opened, QStringList{u"quick-question"_s});
    QVERIFY(!stage.popover()->isVisible());
  }

  void thePopoverIsReachedByTheKeyboard() {
    Stage stage;
    stage.world.registry.setEnabled(u"quick-question"_s, false);
    stage.show();
    KeyButton* key = stage.key(u"K, Ctrl+Alt"_s);
    key->setFocus(Qt::TabFocusReason);
    QVERIFY(stage.popoverTexts().contains(u"Shortcut off"_s));
    QTest::keyClick(key, Qt::Key_Space);
    QCOMPARE(stage.window.focusWidget(), named<QPushButton>(stage.window, u"Change Ask AI…"_s));
    QTest::keyClick(stage.window.focusWidget(), Qt::Key_Escape);
    QCOMPARE(stage.window.focusWidget(), key);
    QVERIFY(stage.window.isVisible() && !stage.popover()->isVisible());
    QTest::keyClick(key, Qt::Key_Escape);
    QVERIFY(!stage.window.isVisible());
  }

  /// The whole card is inside the window wherever the key is.
  void thePopoverIsNeverCut() {
    Stage stage({{32, 0x1800}});
    stage.world.hotkeys.setHotkey(Hotkey{124, 0x1800}, u"feedback"_s);
    stage.world.hotkeys.setHotkey(Hotkey{53, 0x1800}, u"suggest-tool"_s);
    stage.world.hotkeys.setHotkey(Hotkey{76, 0x1800}, u"boilerplates"_s);
    stage.world.setOnline(false);
    stage.show();
    for (KeyButton* key : stage.window.findChildren<KeyButton*>()) {
      if (!key->isVisible()) continue;
      key->setFocus(Qt::TabFocusReason);
      QVERIFY(stage.window.rect().contains(stage.popover()->geometry()));
      QVERIFY(!stage.popover()
                   ->geometry()
                   .adjusted(16, 16, -16, -16)
                   .contains(key->mapTo(&stage.window, key->rect().center())));
    }
    // Its key is not drawn, so the row in the list has to do.
    named<ShortcutRow>(stage.window, u"Boilerplates, "_s)->setFocus(Qt::TabFocusReason);
    QVERIFY(stage.popover()->isVisible());
    QVERIFY(stage.window.rect().contains(stage.popover()->geometry()));
  }

  void aKeyMovesWithItsShortcut() {
    Stage stage;
    stage.show();
    stage.world.hotkeys.setHotkey(Hotkey{7, 0x1800}, u"quick-question"_s);
    QVERIFY(!stage.key(u"K, "_s));
    QVERIFY(stage.key(u"X, Ctrl+Alt: Ask AI"_s));
    QVERIFY(named<ShortcutRow>(stage.window, u"Ask AI, Ctrl+Alt+X"_s));
  }
};

QTEST_MAIN(TestShortcutsWindow)
#include "test_shortcuts_window.moc"
