// The order, the thread and the end of typing. What arrives in programs is tests/e2e/typing's business.

#include <QPlainTextEdit>
#include <QThread>
#include <QtTest>

#include <xcb/xcb.h>

#include <cstdlib>

#include "platform/x11/x11_key_events.h"
#include "tools/keystrokes/keystroke_sender.h"

using namespace Qt::StringLiterals;

namespace {

constexpr xcb_keycode_t kKeyS = 39;
constexpr xcb_keycode_t kReturn = 36;

}  // namespace

class X11KeyEventsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    text_ = std::make_unique<QPlainTextEdit>();
    text_->show();
    QVERIFY(QTest::qWaitForWindowActive(text_.get()));
    events_ = makeX11KeyEvents();
  }
  void cleanup() {
    events_.reset();
    text_.reset();
  }

  void sequencesAreTypedOneAfterTheOther() {
    QStringList finished;
    for (const QString& words : {u"eins "_s, u"zwei ② "_s, u"drei"_s})
      events_->perform(KeystrokeSender::sequence(words, false), [&finished, words](const auto& result) {
        QVERIFY(result);
        QCOMPARE(QThread::currentThread(), qApp->thread());
        finished.append(words);
      });
    QTRY_COMPARE(finished.size(), 3);
    QTRY_COMPARE(text_->toPlainText(), u"eins zwei ② drei"_s);
    QCOMPARE(finished.join(QString()), text_->toPlainText());
  }

  void aChordHoldsControl() {
    text_->setPlainText(u"old"_s);
    events_->perform({PressKey{0, 0x0100}, TypeText{u"new"_s}}, {});  // A: select all
    QTRY_COMPARE(text_->toPlainText(), u"new"_s);
  }

  void whatHasNoKeyIsReportedAndTheRestTyped() {
    std::optional<bool> typed;
    events_->perform({PressKey{0xfff0, 0}, TypeText{u"rest"_s}},
                     [&](const auto& result) { typed = result.has_value(); });
    QTRY_VERIFY(typed.has_value());
    QVERIFY(!*typed);
    QTRY_COMPARE(text_->toPlainText(), u"rest"_s);
  }

  void whoKeepsTheKeyboardGetsNoKeys() {
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> locker(xcb_connect(nullptr, nullptr),
                                                                              &xcb_disconnect);
    grab(*locker);
    std::optional<std::expected<void, KeyEventError>> typed;
    const auto take = [&](const auto& result) { typed = result; };
    events_->perform(KeystrokeSender::sequence(u"secret"_s, true), take);
    QTRY_VERIFY(typed);
    QVERIFY(!*typed);
    QCOMPARE(typed->error().kind, KeyEventError::Kind::refused);
    while (xcb_generic_event_t* event = xcb_poll_for_event(locker.get())) {
      const auto code = reinterpret_cast<const xcb_key_press_event_t*>(event)->detail;
      // A key that types nothing comes first; where it goes shows only then.
      const bool isTyped = (event->response_type & 0x7f) == XCB_KEY_PRESS && (code == kKeyS || code == kReturn);
      free(event);
      QVERIFY(!isTyped);
    }
    QVERIFY(text_->toPlainText().isEmpty());

    // A shortcut's grab ends soon, and is waited for.
    typed.reset();
    events_->perform(KeystrokeSender::sequence(u"late"_s, false), take);
    QTest::qWait(100);
    QVERIFY(!typed);
    xcb_ungrab_keyboard(locker.get(), XCB_CURRENT_TIME);
    xcb_flush(locker.get());
    QTRY_VERIFY(typed);
    QVERIFY(*typed);
    QTRY_COMPARE(text_->toPlainText(), u"late"_s);
  }

  void aMegabyteEndsWithItsOwner() {
    bool done = false;
    const QString megabyte = u"x"_s.repeated(1 << 20);
    events_->perform(KeystrokeSender::sequence(megabyte, false), [&](const auto&) { done = true; });
    QTRY_VERIFY(!text_->toPlainText().isEmpty());
    QElapsedTimer timer;
    timer.start();
    events_.reset();
    // All of it would take minutes.
    QVERIFY2(timer.elapsed() < 10'000, qPrintable(QString::number(timer.elapsed())));
    QCoreApplication::processEvents();
    QVERIFY(!done);
  }

  void aStopEndsOneSequenceOnly() {
    std::stop_source stop;
    std::optional<bool> succeeded;
    const auto end = [&](const auto& result) { succeeded = result.has_value(); };
    events_->perform(KeystrokeSender::sequence(u"x"_s.repeated(1 << 20), false), stop.get_token(), end);
    events_->perform(KeystrokeSender::sequence(u"never"_s, false), stop.get_token(), {});
    events_->perform(KeystrokeSender::sequence(u"next"_s, false), {});
    QTRY_VERIFY(!text_->toPlainText().isEmpty());
    stop.request_stop();
    QTRY_VERIFY(succeeded);
    QVERIFY(!*succeeded);
    QTRY_VERIFY(text_->toPlainText().endsWith(u"xnext"_s));
  }

  void withoutADisplayItSaysSo() {
    const QByteArray display = qgetenv("DISPLAY");
    qputenv("DISPLAY", ":987");
    const auto nowhere = makeX11KeyEvents();
    QString reason;
    nowhere->perform({TypeText{u"a"_s}},
                     [&](const auto& result) { reason = result ? QString() : result.error().reason; });
    QTRY_VERIFY(reason.contains(u"X display"_s));
    qputenv("DISPLAY", display);
  }

 private:
  static void grab(xcb_connection_t& connection) {
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(&connection)).data->root;
    const auto cookie =
        xcb_grab_keyboard(&connection, false, root, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    const std::unique_ptr<xcb_grab_keyboard_reply_t, decltype(&free)> reply(
        xcb_grab_keyboard_reply(&connection, cookie, nullptr), &free);
    QVERIFY(reply && reply->status == XCB_GRAB_STATUS_SUCCESS);
  }

  std::unique_ptr<QPlainTextEdit> text_;
  std::unique_ptr<KeyEvents> events_;
};

QTEST_MAIN(X11KeyEventsTest)
#include "x11_key_events_test.moc"
