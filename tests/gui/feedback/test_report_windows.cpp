#include <QDropEvent>
#include <QImage>
#include <QMimeData>
#include <QPushButton>
#include <QSettings>
#include <QTest>

#include "capture/png_encoding.h"
#include "core/ui/footer_hints.h"
#include "support/controls.h"
#include "support/fake_panel_window.h"
#include "support/report_world.h"
#include "support/wear_theme.h"
#include "tools/feedback/message_field.h"
#include "tools/feedback/report_panel.h"
#include "tools/feedback/report_view.h"

using namespace Qt::StringLiterals;

namespace {

QByteArray picture(const QColor& colour) {
  QImage image(320, 200, QImage::Format_RGB32);
  image.fill(colour);
  return pngOf(image);
}

struct Window {
  explicit Window(ReportPanelController& owner, QWidget* choice = nullptr)
      : controller(owner),
        panel(native, owner, new ReportView(owner, u"Feedback"_s, choice), PanelPosition(defaults, "feedback"_L1)) {
    panel.present();
    owner.toggle();
    panel.panel().activateWindow();
    if (!QTest::qWaitForWindowActive(&panel.panel())) qFatal("the panel is not active");
  }

  ReportView& view() { return *panel.panel().findChild<ReportView*>(); }
  MessageField& field() { return *view().findChild<MessageField*>(); }
  void press(Qt::Key key, Qt::KeyboardModifiers held = {}) { QTest::keyClick(panel.panel().windowHandle(), key, held); }
  void type(const QString& text) {
    for (const QChar character : text)
      QTest::sendKeyEvent(QTest::Click, panel.panel().windowHandle(), Qt::Key_unknown, QString(character), {});
  }
  bool says(const QString& text) { return shownTexts(view()).contains(text); }
  QPushButton* checked() {
    for (auto* button : view().findChildren<QPushButton*>())
      if (button->isChecked()) return button;
    return nullptr;
  }

  ReportPanelController& controller;
  QTemporaryDir directory;
  QSettings defaults{directory.filePath(u"defaults.ini"_s), QSettings::IniFormat};
  FakePanelWindow native;
  ReportPanel panel;
};

}  // namespace

class TestReportWindows : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { wearTheme(); }

  void wordsAreTypedAndEveryStateIsSeen() {
    ReportWorld at;
    Window window(at.feedback, new CategoryPills(at.feedback));
    QCOMPARE(unnamedControls(window.panel.panel()), QStringList());
    QVERIFY(window.field().hasFocus());
    QCOMPARE(window.checked()->text(), u"Bug"_s);
    QVERIFY(
        window.says(u"Only your words, the snips you choose, and the app/Testix version are sent — nothing else."_s));
    window.press(Qt::Key_Tab);
    QCOMPARE(window.checked()->text(), u"Feedback"_s);
    QCOMPARE(window.field().placeholderText(),
             u"What's working, what's annoying, what would make the app better for you…"_s);
    window.type(u"The settings window opens behind the terminal."_s);
    QCOMPARE(at.feedback.model().message(), u"The settings window opens behind the terminal."_s);
    at.feedback.model().addSnip(picture(Qt::darkCyan));
    at.feedback.model().addSnip("not a picture");
    QTest::qWait(0);
    auto* remove = named<QPushButton>(window.view(), u"Remove this snip, snip 2"_s);
    QTest::mouseClick(remove, Qt::LeftButton);
    QCOMPARE(at.feedback.model().snips().size(), 1U);
    at.feedback.model().addSnip(picture(Qt::darkRed));
    at.feedback.model().addSnip(picture(Qt::darkGreen));
    QVERIFY(window.says(u"That is as many as go along: 3 snips per report."_s));

    window.press(Qt::Key_Return, Qt::ControlModifier);
    QVERIFY(window.says(u"Sending your feedback…"_s));
    QVERIFY(window.field().isReadOnly());
    QTRY_VERIFY(!at.http.waiting.empty());
    QVERIFY(at.http.answer(200, "{}"));
    QVERIFY(window.says(u"Thanks — feedback sent!"_s) && window.says(u"Ctrl+N to send another · esc to close"_s));
    window.press(Qt::Key_N, Qt::ControlModifier);
    QVERIFY(window.field().isVisible() && window.field().toPlainText().isEmpty());
    QVERIFY(window.field().hasFocus());
  }

  void theCursorStaysWhereItIsAndReturnBreaksTheLine() {
    ReportWorld at;
    Window window(at.suggest);
    window.type(u"ac"_s);
    window.press(Qt::Key_Left);
    window.type(u"b"_s);
    window.press(Qt::Key_Return);
    QCOMPARE(at.suggest.model().idea(), u"ab\nc"_s);
    window.press(Qt::Key_Tab);
    QCOMPARE(at.suggest.model().idea(), u"ab\nc"_s);
    QVERIFY(window.field().hasFocus());
    QVERIFY(window.says(u"What tool should exist?"_s));
  }

  void itStaysUpAndTakesDroppedPictures() {
    ReportWorld at;
    Window window(at.suggest);
    window.native.loseKeyboard();
    QVERIFY(window.panel.panel().isVisible());
    QCOMPARE(window.view().findChild<FooterHints*>()->accessibleName(), u"Click this window to use its keys"_s);
    QMimeData data;
    data.setData(u"image/png"_s, picture(Qt::blue));
    QDragEnterEvent enter({200, 200}, Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(&window.view(), &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent release({200, 200}, Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(&window.view(), &release);
    QTRY_COMPARE(at.suggest.model().snips().size(), 1U);
    QVERIFY(window.native.keyboardOwner == window.panel.panel().windowHandle());
    QMimeData text;
    text.setText(u"words"_s);
    QDragEnterEvent other({200, 200}, Qt::CopyAction, &text, Qt::LeftButton, {});
    other.ignore();
    QApplication::sendEvent(&window.view(), &other);
    QVERIFY(!other.isAccepted());
  }
};

QTEST_MAIN(TestReportWindows)
#include "test_report_windows.moc"
