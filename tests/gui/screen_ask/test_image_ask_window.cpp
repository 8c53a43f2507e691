#include <QAbstractButton>
#include <QApplication>
#include <QBuffer>
#include <QPainter>
#include <QTest>

#include "core/ui/check_control.h"
#include "core/ui/footer_hints.h"
#include "support/ask_world.h"
#include "support/controls.h"
#include "support/fake_panel_window.h"
#include "support/fake_platform.h"
#include "support/fake_presenters.h"
#include "support/wear_theme.h"
#include "tools/asking/question_field.h"
#include "tools/screen_ask/capture_preview.h"
#include "tools/screen_ask/image_ask_panel.h"
#include "tools/screen_ask/image_ask_panel_controller.h"
#include "tools/screen_ask/image_ask_settings_view.h"
#include "tools/screen_ask/image_ask_view.h"

using namespace Qt::StringLiterals;

namespace {

QByteArray capture() {
  QImage image(640, 400, QImage::Format_RGB32);
  image.fill(QColor(250, 244, 230));
  QPainter painter(&image);
  painter.fillRect(60, 80, 300, 180, QColor(47, 111, 237));
  painter.end();
  QByteArray bytes;
  QBuffer file(&bytes);
  if (!file.open(QIODevice::WriteOnly) || !image.save(&file, "PNG")) qFatal("no picture");
  return bytes;
}

struct Window : AskWorld {
  Window() { useOwnHosts(); }

  QuestionField& field() { return *panel.panel().findChild<QuestionField*>(); }
  void type(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(panel.panel().windowHandle(), key, modifiers);
  }

  FakePanelWindow native;
  FakePasteboard pasteboard;
  FakeLauncherOpener launcher;
  ImageAskClient client{answers()};
  ImageAskPanelController controller{{client, pasteboard, clock, launcher}, [this] { return borrowed(panel); }};
  ImageAskPanel panel{native, controller, [](const QUrl&) {}};
};

}  // namespace

class TestImageAskWindow : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { wearTheme(); }

  void aCaptureIsAskedAboutBesideItsPreview() {
    Window window;
    window.controller.show(capture(), false);
    QApplication::setActiveWindow(&window.panel.panel());
    QCOMPARE(window.field().accessibleName(), u"Ask about this capture…"_s);
    QCOMPARE(window.panel.panel().findChild<CapturePreview*>()->accessibleName(), u"Captured area, 640 × 400"_s);
    QTest::keyClicks(&window.field(), u"What colour is the box?"_s);
    window.type(Qt::Key_Return);
    QVERIFY(window.isWaiting());
    window.stream(AskWorld::done(u"**Blue**"_s));
    QCOMPARE(window.field().accessibleName(), u"Ask a follow-up…"_s);
    window.type(Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(window.pasteboard.texts, QStringList(u"**Blue**"_s));
    // It stays when the user turns to what was captured.
    window.native.loseKeyboard();
    QVERIFY(window.controller.isShown());
    QCOMPARE(window.panel.panel().findChild<FooterHints*>()->accessibleName(), u"Click this window to use its keys"_s);
    window.type(Qt::Key_N, Qt::ControlModifier);
    QCOMPARE(window.field().accessibleName(), u"Ask about this capture…"_s);
    QVERIFY(!window.controller.model().imagePNG().isEmpty());
    window.type(Qt::Key_Escape);
    QVERIFY(!window.panel.panel().isVisible());
  }

  void thePageTestsTheConnection() {
    Window window;
    ImageAskSettingsView page(window.client);
    page.resize(520, 380);
    page.show();
    auto* check = page.findChild<CheckControl*>();
    check->click();
    QVERIFY(window.isWaiting());
    QVERIFY(window.request().body.contains("capture.png"));
    window.http.answer(500, "oops");
    QTRY_VERIFY(!check->isTesting());
    QVERIFY(shownTexts(page).contains(u"Request failed (HTTP 500) oops"_s));
  }
};

QTEST_MAIN(TestImageAskWindow)
#include "test_image_ask_window.moc"
