#include <QAbstractNativeEventFilter>
#include <QGuiApplication>
#include <QTest>

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>

#include "platform/x11/terminal_windows.h"
#include "platform/x11/window_client.h"
#include "platform/x11/x11_key_targets.h"
#include "platform/x11/x11_selected_text.h"
#include "support/x_client.h"

using namespace Qt::StringLiterals;

namespace {

/// WM_CLASS as it stands in the property.
QByteArray wmClass(const char* instance, const char* name) {
  return QByteArray(instance) + '\0' + QByteArray(name) + '\0';
}

/// Counts what has reached this process. Those who have begun to look later have seen it by then.
class RawPresses final : public QAbstractNativeEventFilter {
 public:
  explicit RawPresses(std::shared_ptr<X11RawInput> input) : input_(std::move(input)) {
    qApp->installNativeEventFilter(this);
  }
  bool nativeEventFilter(const QByteArray&, void* message, qintptr*) override {
    const auto raw = input_->read(*static_cast<const xcb_generic_event_t*>(message));
    if (raw && raw->type == XCB_INPUT_RAW_KEY_PRESS) ++count;
    return false;
  }
  int count = 0;

 private:
  std::shared_ptr<X11RawInput> input_;
};

KeyTarget targetOf(const XClient& client) { return static_cast<KeyTarget>(client.window()); }

}  // namespace

class X11SelectedTextTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void terminalsAreKnownByTheirClass_data() {
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<bool>("isTerminal");
    QTest::addRow("xterm") << wmClass("xterm", "XTerm") << true;
    QTest::addRow("uxterm") << wmClass("uxterm", "UXTerm") << true;
    QTest::addRow("suckless") << wmClass("st-256color", "St") << true;
    QTest::addRow("a class of its own") << wmClass("notes", "kitty-notes") << true;
    QTest::addRow("GNOME") << wmClass("gnome-terminal-server", "Gnome-terminal") << true;
    QTest::addRow("an editor of chords") << wmClass("emacs", "Emacs") << true;
    QTest::addRow("editor") << wmClass("mousepad", "Mousepad") << false;
    QTest::addRow("browser") << wmClass("Navigator", "firefox-esr") << false;
    QTest::addRow("a word with st") << wmClass("steam", "Best") << false;
    QTest::addRow("none") << QByteArray() << false;
  }
  void terminalsAreKnownByTheirClass() {
    QFETCH(const QByteArray, name);
    QFETCH(const bool, isTerminal);
    QCOMPARE(isTerminalClass(name), isTerminal);
  }

  void terminalsAreKnownByWhatTheyHold() {
    QVERIFY(!hasTerminals(getpid()));
    const int terminal = posix_openpt(O_RDWR | O_NOCTTY);
    QVERIFY(terminal >= 0);
    QVERIFY(hasTerminals(getpid()));
    close(terminal);
    QVERIFY(!hasTerminals(getpid()));
    QVERIFY(!hasTerminals(0));
  }

  void windowsOfOneProgramAreKnown() {
    const X11Session session = currentX11Session();
    XClient one;
    one.openWindow(0, 0, 50, 50);
    const xcb_window_t first = one.window();
    one.openWindow(60, 0, 50, 50);
    QVERIFY(isSameClient(session, first, one.window()));
    // Another connection of one process.
    XClient two;
    two.openWindow(0, 60, 50, 50);
    QVERIFY(isSameClient(session, first, two.window()));
    QCOMPARE(processOf(session, first), getpid());
    QVERIFY(!isSameClient(session, first, session.root));
  }

  void keysGoToTheActiveWindow() {
    const X11Session session = currentX11Session();
    bool isPanelTyping = false;
    const auto rawInput = std::make_shared<X11RawInput>(session);
    const X11KeyTargets targets(session, rawInput, [&isPanelTyping] { return isPanelTyping; });
    XClient one;
    one.openWindow(100, 100, 200, 200);
    QTRY_COMPARE(targets.current(), targetOf(one));
    XClient two;
    two.openWindow(400, 100, 200, 200);
    QTRY_COMPARE(targets.current(), targetOf(two));
    isPanelTyping = true;
    QCOMPARE(targets.current(), KeyTarget::none);
    isPanelTyping = false;
    // A program takes the focus past the window manager, as menus and locks do.
    const std::uint32_t unmanaged = 1;
    const xcb_window_t menu = xcb_generate_id(two.connection());
    xcb_create_window(two.connection(), XCB_COPY_FROM_PARENT, menu, two.root(), 0, 0, 50, 50, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT, &unmanaged);
    xcb_map_window(two.connection(), menu);
    xcb_set_input_focus(two.connection(), XCB_INPUT_FOCUS_POINTER_ROOT, menu, XCB_CURRENT_TIME);
    QTRY_COMPARE(two.focusedWindow(), menu);
    QCOMPARE(targets.current(), KeyTarget::none);
  }

  void escapeIsSeenWhoeverHasIt() {
    const X11Session session = currentX11Session();
    const auto rawInput = std::make_shared<X11RawInput>(session);
    bool isPanelTyping = false;
    const X11KeyTargets targets(session, rawInput, [&isPanelTyping] { return isPanelTyping; });
    XClient other;
    other.openWindow(100, 100, 200, 200);
    QTRY_COMPARE(targets.current(), targetOf(other));
    const xcb_keycode_t escape = other.keyCode(0xff1b);
    const RawPresses handled(rawInput);
    QList<int> toldAfter;
    std::unique_ptr<EscapeWatch> watch = targets.watchEscape([&] {
      toldAfter.append(handled.count);
      if (toldAfter.size() == 2) watch.reset();
    });
    // Another one's end is not its end.
    targets.watchEscape([] {}).reset();
    other.tap(escape);
    QTRY_COMPARE(toldAfter, QList({1}));
    const xcb_keycode_t control = other.keyCode(0xffe3);
    other.key(control, true);
    other.tap(escape);
    QTRY_COMPARE(handled.count, 3);
    other.key(control, false);
    isPanelTyping = true;
    other.tap(escape);
    QTRY_COMPARE(handled.count, 4);
    isPanelTyping = false;
    other.tap(other.keyCode('a'));
    QTRY_COMPARE(handled.count, 5);
    other.tap(escape);
    QTRY_COMPARE(toldAfter, QList({1, 6}));
    QVERIFY2(!watch, "who hears of it may end it");
    QCOMPARE(other.keysReceived().size(), 6U);
  }

  void noKeyGoesWhereNobodyIsOrToATerminal() {
    const X11SelectedText text(currentX11Session());
    QVERIFY(!text.isCopiedByShortcut(KeyTarget::none));
    XClient client;
    client.openWindow(0, 0, 50, 50);
    QVERIFY(text.isCopiedByShortcut(targetOf(client)));
    client.setProperty("WM_CLASS", wmClass("xterm", "XTerm"));
    QVERIFY(!text.isCopiedByShortcut(targetOf(client)));
  }

  void anEditorsMarkedTextIsNotBelieved() {
    X11SelectedText text(currentX11Session());
    XClient client;
    client.openWindow(0, 0, 50, 50);
    client.own("PRIMARY");
    std::optional<std::optional<QString>> answer;
    const Job job = Job::start();
    text.read(targetOf(client), job, [&answer](std::optional<QString> read) { answer = std::move(read); });
    QTRY_VERIFY(answer);
    QVERIFY(!*answer);
  }
};

QTEST_MAIN(X11SelectedTextTest)
#include "x11_selected_text_test.moc"
