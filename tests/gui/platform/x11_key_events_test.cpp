// The order, the thread and the end of typing. What arrives in programs is tests/e2e/typing's business.

#include <QPlainTextEdit>
#include <QThread>
#include <QtTest>

#include "platform/x11/x11_key_events.h"
#include "tools/keystrokes/keystroke_sender.h"

using namespace Qt::StringLiterals;

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

  void aMegabyteEndsWithItsOwner() {
    bool done = false;
    const QString megabyte = u"x"_s.repeated(1 << 20);
    events_->perform(KeystrokeSender::sequence(megabyte, false), [&](const auto&) { done = true; });
    QTRY_VERIFY(!text_->toPlainText().isEmpty());
    QElapsedTimer timer;
    timer.start();
    events_.reset();
    QVERIFY2(timer.elapsed() < 1000, qPrintable(QString::number(timer.elapsed())));
    QCoreApplication::processEvents();
    QVERIFY(!done);
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
  std::unique_ptr<QPlainTextEdit> text_;
  std::unique_ptr<KeyEvents> events_;
};

QTEST_MAIN(X11KeyEventsTest)
#include "x11_key_events_test.moc"
