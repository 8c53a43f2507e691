#include <QTest>

#include "support/files.h"
#include "support/report_world.h"

using namespace Qt::StringLiterals;

using Phase = ReportModel::Phase;

namespace {

constexpr std::uint32_t kS = 1;
constexpr std::uint32_t kN = 45;

const QByteArray kPNG("\x89PNG\r\n\x1a\n...", 11);
}  // namespace

class TestReportPanels : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    QCoreApplication::setApplicationVersion(u"1.2.3"_s);
    at_ = std::make_unique<ReportWorld>();
  }

  void aBugReportIsSentWithItsSnips() {
    at_->useOwnHosts();
    FeedbackPanelController& panel = at_->feedback;
    panel.toggle();
    panel.model().setMessage(u"It \"breaks\" — always\n"_s);
    for (const QByteArray& png : {kPNG, kPNG + "2"}) {
      QVERIFY(ReportWorld::press(panel, kS));
      at_->regions.select(png);
    }
    QVERIFY(ReportWorld::press(panel, keycode::kKeypadEnter));
    QVERIFY(panel.model().phase() == Phase::sending);
    QTRY_COMPARE(at_->http.sent.size(), 1U);
    const HttpRequest& request = at_->http.sent.front();
    QCOMPARE(request.url, QUrl(u"https://api.example/v1/feedback"_s));
    QCOMPARE(request.timeout, std::chrono::seconds(120));
    QCOMPARE(request.answerDeadline, std::chrono::seconds(120));
    QVERIFY(request.body.contains(u"\r\n\r\nIt \"breaks\" — always\n\r\n"_s.toUtf8()));
    QVERIFY(request.body.contains("filename=\"snip-2.png\"\r\nContent-Type: image/png\r\n\r\n" + kPNG + "2\r\n"));
    // Nothing is sent twice, nor changed on its way.
    ReportWorld::press(panel, keycode::kReturn);
    ReportWorld::press(panel, kN);
    panel.model().setMessage(u"late"_s);
    panel.model().removeSnip(panel.model().snips().front().id);
    QVERIFY(panel.model().message().startsWith(u"It"_s) && panel.model().snips().size() == 2);
    QVERIFY(at_->http.answer(204, {}));
    QVERIFY(panel.model().phase() == Phase::sent);
    QVERIFY(!panel.model().canSubmit() && !panel.model().canAddSnip());
    QCOMPARE(at_->http.sent.size(), 1U);
    ReportWorld::press(panel, kN);
    QVERIFY(panel.model().phase() == Phase::editing && panel.model().message().isEmpty());
    QVERIFY(panel.model().snips().empty());
  }

  void aCredentialThatCannotBeReadOrSentKeepsNobodyFromSpeaking() {
    at_->suggest.model().setMessage(u"x"_s);
    at_->vault.error = CredentialError{};
    at_->suggest.submit();
    QTRY_COMPARE(at_->http.sent.size(), 1U);
    QVERIFY(at_->header("X-Person-Token").isNull());
    at_->feedback.model().setMessage(u"x"_s);
    at_->vault.error.reset();
    at_->vault.secrets[u"api"_s] = "a\r\nInjected: b";
    at_->feedback.submit();
    QTRY_COMPARE(at_->http.sent.size(), 2U);
    QVERIFY(at_->header("X-Person-Token").isNull());
  }

  void aFailureKeepsEverythingAndCanBeRetried() {
    FeedbackPanelController& panel = at_->feedback;
    panel.toggle();
    panel.model().setMessage(u"words"_s);
    panel.model().addSnip(kPNG);
    panel.submit();
    QTRY_COMPARE(at_->http.sent.size(), 1U);
    QVERIFY(at_->http.answer(500, "a\nb" + QByteArray(200, 'x')));
    QCOMPARE(panel.model().error(), u"Submission failed (HTTP 500) a\\nb"_s + QString(77, u'x'));
    QCOMPARE(panel.model().message(), u"words"_s);
    QCOMPARE(panel.model().snips().size(), 1U);
    QVERIFY(ReportWorld::press(panel, keycode::kReturn));
    QTRY_COMPARE(at_->http.sent.size(), 2U);
    QVERIFY(at_->http.answer(std::unexpected(HttpError{HttpError::Reason::timedOut, {}})));
    QVERIFY(panel.model().phase() == Phase::failed && !panel.model().error().isEmpty());
    at_->builtIn.place = std::unexpected(ServiceError{ServiceError::Reason::configuration, u"There is none."_s});
    panel.submit();
    QTRY_COMPARE(panel.model().error(), u"There is none."_s);
  }

  void withoutWordsNothingIsSent() {
    at_->feedback.toggle();
    for (const QString& text : {QString(), u" \n\t "_s}) {
      at_->feedback.model().setMessage(text);
      QVERIFY(!at_->feedback.model().canSubmit());
      QVERIFY(ReportWorld::press(at_->feedback, keycode::kReturn));
      QVERIFY(at_->feedback.model().phase() == Phase::editing);
    }
  }

  void thePanelStepsAsideForASnipAndComesBackWithEverything() {
    FeedbackPanelController& panel = at_->feedback;
    panel.toggle();
    panel.model().setMessage(u"see"_s);
    ReportWorld::press(panel, kS);
    QCOMPARE(at_->regions.labels, QStringList(u"Add Snip"_s));
    QCOMPARE(at_->regions.icons, QStringList(u"plus.viewfinder"_s));
    QVERIFY(!at_->counts.isUp());
    // Neither the shortcut nor keys that come late disturb it.
    panel.toggle();
    QVERIFY(!panel.handleKey({.keyCode = keycode::kEscape}));
    at_->regions.cancel();
    QVERIFY(at_->counts.isUp() && panel.model().snips().empty());
    QCOMPARE(panel.model().message(), u"see"_s);
    for (int snip = 0; snip < 3; ++snip) {
      ReportWorld::press(panel, kS);
      at_->regions.select(kPNG);
    }
    QVERIFY(!panel.model().canAddSnip());
    ReportWorld::press(panel, kS);
    QVERIFY(!at_->regions.isSelecting() && at_->counts.isUp());
    QVERIFY(ReportWorld::press(panel, kS, true));
    QCOMPARE(panel.model().snips().size(), 2U);
    // Nor does it disturb whoever has turned elsewhere.
    ReportWorld::press(panel, kS);
    at_->regions.loseKeyboard();
    QVERIFY(!at_->counts.isUp());
  }

  void withoutThePermissionItStaysAndSaysWhy() {
    at_->permissions.screenRecording = PermissionState::notGranted;
    at_->suggest.toggle();
    ReportWorld::press(at_->suggest, kS);
    QVERIFY(at_->regions.labels.isEmpty());
    QCOMPARE(at_->toasts.shown.at(0).first.title, u"Screen Recording permission needed"_s);
    QCOMPARE(at_->permissions.pages, std::vector{Permission::screenRecording});
    QCOMPARE(at_->permissions.prompts, 1);
  }

  void imagesArePastedAndDropped() {
    FeedbackPanelController& panel = at_->feedback;
    at_->pasteboard.data = {{PasteboardFormat::png, kPNG}};
    panel.pasteSnip();
    QTRY_COMPARE(panel.model().snips().size(), 1U);
    panel.dropSnips({{PasteboardFormat::png, kPNG + "a"},
                     {PasteboardFormat::fileURLs, "file:///nowhere.png"},
                     {PasteboardFormat::png, kPNG + "b"},
                     {PasteboardFormat::png, kPNG + "c"}});
    QTRY_COMPARE(panel.model().snips().size(), 3U);
    QCOMPARE(panel.model().snips().back().png, kPNG + "b");
  }

  void theKindIsChosenWithTheKeyboard() {
    FeedbackPanelController& panel = at_->feedback;
    panel.toggle();
    const auto tab = [&panel](bool shift) { QVERIFY(panel.handleKey({.keyCode = keycode::kTab, .shift = shift})); };
    tab(true);
    QVERIFY(panel.model().category() == FeedbackCategory::question);
    QCOMPARE(panel.placeholder(), u"What are you trying to do, and where did you get stuck…"_s);
    tab(false);
    QVERIFY(panel.model().category() == FeedbackCategory::bug);
    QVERIFY(ReportWorld::press(panel, 19));
    QVERIFY(panel.model().category() == FeedbackCategory::feedback);
    // A key is what it types; where that is no Latin letter, it is its place.
    QVERIFY(panel.handleKey({.command = true, .charactersIgnoringModifiers = u"3"_s}));
    QVERIFY(panel.model().category() == FeedbackCategory::question);
    panel.model().setMessage(u"kept"_s);
    QVERIFY(!panel.handleKey({.keyCode = kN, .command = true, .charactersIgnoringModifiers = u"b"_s}));
    QCOMPARE(panel.model().message(), u"kept"_s);
    QVERIFY(panel.handleKey({.keyCode = kN, .command = true, .charactersIgnoringModifiers = u"т"_s}));
    QVERIFY(panel.model().message().isEmpty() && panel.model().category() == FeedbackCategory::bug);
    at_->suggest.toggle();
    QVERIFY(!at_->suggest.handleKey({.keyCode = keycode::kTab}) && !ReportWorld::press(at_->suggest, 18));
  }

  void escapeBreaksOffAndLeadsBackToTheLauncher() {
    FeedbackPanelController& panel = at_->feedback;
    at_->launcher.startedFromLauncher = true;
    panel.toggle();
    panel.model().setMessage(u"words"_s);
    panel.submit();
    QTRY_COMPARE(at_->http.sent.size(), 1U);
    QVERIFY(panel.handleKey({.keyCode = keycode::kEscape}));
    QVERIFY(!panel.isShown() && !at_->counts.isUp());
    QCOMPARE(at_->launcher.shown, QStringList(kFeedbackID));
    QVERIFY(at_->http.answer(200, "{}"));
    QVERIFY(panel.model().phase() == Phase::failed && at_->toasts.shown.empty());
    QCOMPARE(panel.model().message(), u"words"_s);
    panel.toggle();
    panel.submit();
    QTRY_COMPARE(at_->http.sent.size(), 2U);
    // Closed with the shortcut, it goes on and is told of.
    panel.toggle();
    QVERIFY(at_->http.answer(200, "{}"));
    QCOMPARE(at_->toasts.shown.at(0).first.title, u"Thanks — feedback sent!"_s);
    panel.toggle();
    QVERIFY(panel.model().phase() == Phase::editing && panel.model().message().isEmpty());
    QVERIFY(panel.handleKey({.keyCode = keycode::kEscape}));
    QCOMPARE(at_->launcher.shown.size(), 1);
  }

 private:
  std::unique_ptr<ReportWorld> at_;
};

QTEST_GUILESS_MAIN(TestReportPanels)
#include "test_report_panels.moc"
