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
#include "core/ui/theme_palette.h"
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

  void everythingHasAName() {
    Stage stage({{32, 0x1800}});
    stage.show();
    QCOMPARE(unnamedControls(stage.window), QStringList());
    QVERIFY(stage.key(u"K, Ctrl+Alt: Ask AI"_s));
    QVERIFY(stage.key(u"Space, Ctrl+Alt: Launcher"_s));
    QVERIFY(stage.key(u"U, Ctrl+Alt"_s)->accessibleDescription().contains(u"taken by another program"_s));
    QVERIFY(named<ShortcutRow>(stage.window, u"Ask AI, Ctrl+Alt+K"_s));
    for (const int key : {Qt::Key_Tab, Qt::Key_Space}) {
      QTest::keyClick(qApp->focusWidget(), static_cast<Qt::Key>(key));
      QCOMPARE(unnamedControls(stage.window), QStringList());
    }
  }

  /// For the eye; written where VANTLE_SHOTS says.
  void pictures() {
    const QString folder = qEnvironmentVariable("VANTLE_SHOTS");
    if (folder.isEmpty()) QSKIP("VANTLE_SHOTS names no folder");
    for (const bool dark : {false, true}) {
      QApplication::setPalette(themePalette(dark ? Theme::darkTheme() : Theme::light()));
      const QString look = dark ? u"dark"_s : u"light"_s;
      Stage stage({{32, 0x1800}});
      stage.world.registry.setEnabled(u"boilerplates"_s, false);
      stage.show();
      stage.window.grab().save(folder + u"/keyboard-%1-rest.png"_s.arg(look));
      stage.hold(kControlOption);
      stage.window.grab().save(folder + u"/keyboard-%1-held.png"_s.arg(look));
      stage.hold(Qt::NoModifier);
      stage.world.setOnline(false);
      stage.key(u"K,"_s)->setFocus(Qt::TabFocusReason);
      stage.window.grab().save(folder + u"/keyboard-%1-offline.png"_s.arg(look));
      stage.key(u"U,"_s)->setFocus(Qt::TabFocusReason);
      stage.window.grab().save(folder + u"/keyboard-%1-taken.png"_s.arg(look));
      stage.key(u"Space,"_s)->setFocus(Qt::TabFocusReason);
      stage.window.grab().save(folder + u"/keyboard-%1-own.png"_s.arg(look));
    }
  }
};

QTEST_MAIN(TestShortcutsWindow)
#include "test_shortcuts_window.moc"
