#include <QProcess>
#include <QTest>

#include "launcher_stage.h"
#include "platform/platform.h"

using namespace Qt::StringLiterals;

namespace {

QString outputOf(const QString& program, const QStringList& arguments) {
  QProcess process;
  process.start(program, arguments);
  process.waitForFinished();
  return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

QString activeWindow() { return outputOf(u"xdotool"_s, {u"getactivewindow"_s}); }

/// The user's fingers; they do not wait for anybody.
void press(const QStringList& keys) { QProcess::startDetached(u"xdotool"_s, keys); }

constexpr Hotkey kLauncherShortcut{keycode::kSpace, carbon::kControl | carbon::kOption};

}  // namespace

/// The launcher over another program's window, driven by the keys of a real keyboard.
class LauncherKeysTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    terminal_.start(u"xterm"_s, {u"-e"_s, u"cat"_s});
    QVERIFY(terminal_.waitForStarted());
    QTRY_VERIFY(!activeWindow().isEmpty());
    terminalWindow_ = activeWindow();
  }

  void cleanupTestCase() {
    terminal_.kill();
    terminal_.waitForFinished();
  }

  void theShortcutTogglesAndTypedKeysStartATool() {
    Platform platform = makePlatform();
    LauncherStage stage(*platform.panelWindow);
    HotkeyCenter shortcuts(*platform.hotkeys, stage.settings, stage.clock);
    shortcuts.registerAction(kLauncherShortcut, [&stage] { stage.controller.toggle(); });
    const QStringList toggle = {u"key"_s, u"ctrl+alt+space"_s};

    press(toggle);
    QTRY_VERIFY(stage.panel && stage.panel->window().isVisible());
    QCOMPARE(activeWindow(), terminalWindow_);
    press(toggle);
    QTRY_VERIFY(!stage.panel->window().isVisible());

    // No wait between the shortcut and the first letter but a fast hand's.
    press(toggle + QStringList{u"sleep"_s, u"0.02"_s, u"type"_s, u"--delay"_s, u"5"_s, u"feed"_s});
    QTRY_COMPARE(stage.controller.model().query(), u"feed"_s);
    QCOMPARE(stage.controller.model().count(), 1);
    press({u"key"_s, u"Return"_s});
    QTRY_VERIFY(!stage.panel->window().isVisible());
    stage.clock.advance(std::chrono::milliseconds(1));
    QCOMPARE(stage.activated, QStringList{u"feedback"_s});
    QCOMPARE(activeWindow(), terminalWindow_);
  }

  void arrowsCarryDigitsStartAndAClickElsewhereCloses() {
    Platform platform = makePlatform();
    LauncherStage stage(*platform.panelWindow);
    stage.controller.show();
    press({u"key"_s, u"ctrl+Right"_s, u"key"_s, u"ctrl+Down"_s, u"key"_s, u"Left"_s});
    QTRY_COMPARE(stage.controller.model().selectionIndex(), 3);
    QCOMPARE(stage.order().indexOf(u"frequent-clis"_s), 4);
    press({u"mousemove"_s, u"5"_s, u"5"_s, u"click"_s, u"1"_s});
    QTRY_VERIFY(!stage.panel->window().isVisible());

    stage.controller.show();
    press({u"key"_s, u"5"_s});
    QTRY_VERIFY(!stage.panel->window().isVisible());
    stage.clock.advance(std::chrono::milliseconds(1));
    QCOMPARE(stage.activated, QStringList{u"frequent-clis"_s});
  }

 private:
  QProcess terminal_;
  QString terminalWindow_;
};

QTEST_MAIN(LauncherKeysTest)
#include "launcher_keys_test.moc"
