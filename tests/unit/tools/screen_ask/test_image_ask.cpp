#include <QBuffer>
#include <QTest>

#include "support/ask_world.h"
#include "support/fake_palette.h"
#include "support/fake_platform.h"
#include "support/fake_presenters.h"
#include "support/fake_region_selector.h"
#include "support/strict_multipart.h"
#include "tools/screen_ask/image_ask_tool.h"

using namespace Qt::StringLiterals;

namespace {

/// Screen ask over fakes.
struct Asking : AskWorld {
  Asking() { useOwnHosts(); }

  static QByteArray png(int width) {
    QImage image(width, 20, QImage::Format_RGB32);
    image.fill(Qt::white);
    QByteArray bytes;
    QBuffer file(&bytes);
    if (!file.open(QIODevice::WriteOnly) || !image.save(&file, "PNG")) qFatal("no picture");
    return bytes;
  }
  void capture(int width = 60) {
    tool.activate();
    regions.select(png(width));
  }
  void ask(const QString& question) {
    model.setQuestion(question);
    controller.submit();
  }
  std::vector<FormPart> parts() const {
    return StrictForm::parse(header("Content-Type"), request().body).value_or(std::vector<FormPart>());
  }

  FakePasteboard pasteboard;
  FakeRegionSelector regions;
  FakePermissions permissions;
  FakeLauncherOpener launcher;
  FakeToasts toasts;
  ImageAskClient client{answers()};
  ImageAskPanelController controller{{client, pasteboard, clock, launcher}, SilentPanel::make};
  ImageAskModel& model = controller.model();
  ImageAskTool tool{{controller, regions, permissions, launcher, toasts}, {}};
};

}  // namespace

class TestImageAsk : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void aRegionIsAskedAboutAgainAndAgain() {
    Asking asking;
    asking.tool.activate();
    QCOMPARE(asking.regions.labels, QStringList(u"Image Ask"_s));
    QCOMPARE(asking.regions.icons, QStringList(u"questionmark.bubble"_s));
    QVERIFY(!asking.controller.isShown());
    asking.regions.select(Asking::png(60));
    QVERIFY(asking.controller.isShown());
    QCOMPARE(asking.model.previewImage().size(), QSize(60, 20));

    asking.ask(u"What is it?"_s);
    QVERIFY(asking.isWaiting());
    QCOMPARE(asking.model.pendingQuestion(), u"What is it?"_s);
    asking.stream(AskWorld::done(u"A line"_s));
    asking.ask(u"How long?"_s);
    QVERIFY(asking.isWaiting());
    const auto parts = asking.parts();
    QCOMPARE(parts.size(), 3U);
    QCOMPARE(parts[0].content, AskExchange::historyJSON({{u"What is it?"_s, u"A line"_s}})->toUtf8());
    QVERIFY((parts[2] == FormPart{"file", "capture.png", "image/png", Asking::png(60)}));
    // A new start keeps the capture.
    QVERIFY(asking.controller.handleKey(letter(u'n', true)));
    asking.stream(AskWorld::done(u"late"_s));
    QVERIFY(asking.model.exchanges().empty());
    QVERIFY(!asking.model.imagePNG().isEmpty() && !asking.model.previewImage().isNull());
  }

  void theShortcutClosesAndNothingIsKept() {
    Asking asking;
    asking.capture();
    asking.ask(u"What is it?"_s);
    QVERIFY(asking.isWaiting());
    asking.tool.activate();
    QVERIFY(!asking.controller.isShown() && !asking.regions.isSelecting());
    asking.stream(AskWorld::done(u"late"_s));
    QVERIFY(asking.model.exchanges().empty() && asking.model.question().isEmpty());
    QVERIFY(asking.model.imagePNG().isEmpty() && asking.model.previewImage().isNull());
    asking.capture(80);
    QCOMPARE(asking.model.previewImage().width(), 80);
  }

  void escapeLeadsBackToTheLauncherThatStartedIt() {
    Asking asking;
    asking.launcher.startedFromLauncher = true;
    asking.tool.activate();
    asking.regions.cancel();
    QVERIFY(!asking.controller.isShown());
    QCOMPARE(asking.launcher.shown, QStringList(u"image-ask"_s));
    asking.launcher.startedFromLauncher = true;
    asking.capture();
    QVERIFY(asking.controller.handleKey(code(keycode::kEscape)));
    QCOMPARE(asking.launcher.shown.size(), 2);
    asking.capture();
    QVERIFY(asking.controller.handleKey(code(keycode::kEscape)));
    asking.tool.activate();
    asking.regions.cancel();
    QCOMPARE(asking.launcher.shown.size(), 2);
  }

  void nothingArrivesAfterEscapeOrANewStart() {
    Asking asking;
    asking.capture();
    for (const bool isNewStart : {true, false}) {
      asking.ask(u"What is it?"_s);
      QVERIFY(asking.isWaiting());
      asking.http.deliver(AskWorld::delta(u"A"_s));
      QCOMPARE(asking.model.partialAnswer(), u"A"_s);
      asking.controller.handleKey(isNewStart ? letter(u'n', true) : code(keycode::kEscape));
      QVERIFY(!asking.model.pending() && asking.model.partialAnswer().isEmpty());
      asking.http.deliver(AskWorld::delta(u" line"_s));
      asking.http.answer(200, "A line");
      QVERIFY(asking.model.exchanges().empty() && asking.model.partialAnswer().isEmpty());
      QVERIFY(!asking.model.errorMessage());
    }
    // Nor from a question whose place was still being looked for.
    const std::size_t sent = asking.http.sent.size();
    asking.capture();
    asking.ask(u"What is it?"_s);
    asking.tool.activate();
    asking.capture();
    QTest::qWait(50);
    QCOMPARE(asking.http.sent.size(), sent);
  }

  void theLauncherDoesNotComeOverWhatTheUserHasTurnedTo() {
    Asking asking;
    asking.launcher.startedFromLauncher = true;
    asking.tool.activate();
    asking.regions.loseKeyboard();
    QVERIFY(asking.launcher.shown.isEmpty());
    // Nor over a second selection of its own.
    asking.launcher.startedFromLauncher = true;
    asking.tool.activate();
    asking.tool.activate();
    asking.regions.cancel();
    QVERIFY(asking.launcher.shown.isEmpty());
    asking.regions.select(Asking::png(70));
    QCOMPARE(asking.model.previewImage().width(), 70);
  }

  void withoutThePermissionTheSystemAsks() {
    Asking asking;
    asking.permissions.screenRecording = PermissionState::notGranted;
    asking.tool.activate();
    QCOMPARE(asking.permissions.prompts, 1);
    QVERIFY(!asking.regions.isSelecting() && asking.toasts.shown.empty());
  }
};

QTEST_GUILESS_MAIN(TestImageAsk)
#include "test_image_ask.moc"
