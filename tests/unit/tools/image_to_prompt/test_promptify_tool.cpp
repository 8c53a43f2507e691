#include <QImage>
#include <QTest>
#include <QThreadPool>

#include "support/files.h"
#include "support/prompt_world.h"
#include "support/strict_multipart.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QByteArray kPNG("\x89PNG\r\n\x1a\n...", 11);

QByteArray json(QByteArray text) { return text.replace('\'', '"'); }

struct Body {
  QByteArray body;
  /// Null: there is none.
  QString prompt;
};

}  // namespace

class TestPromptifyTool : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    at_ = std::make_unique<PromptWorld>();
    tool_ = std::make_unique<PromptifyTool>(at_->toolServices(), SettingsViewFactory());
  }
  void cleanup() {
    tool_.reset();
    at_.reset();
  }

  void aCopiedImageBecomesAPromptOnTheClipboardAndACard() {
    at_->preferences.update([](Preferences& values) { values.soundOnComplete = true; });
    at_->copyImage(promptifyTestImage().data);
    tool_->activate();
    QTRY_COMPARE(at_->http.sent.size(), 1U);
    QCOMPARE(at_->toast(), u"Generating general purpose prompt…|Esc or a click here cancels|180"_s);
    QCOMPARE(at_->toasts.shown.back().first.icon, u"wand.and.stars"_s);
    const HttpRequest& request = at_->http.sent.front();
    QCOMPARE(request.url, QUrl(u"http://127.0.0.1:9/ai-prompt"_s));
    QCOMPARE(request.method, "POST");
    QCOMPARE(request.timeout, 60s);
    QVERIFY(request.answerDeadline > request.timeout && request.maximumAnswer < 1'000'000);
    QCOMPARE(headerOf(request, "Authorization"), "Bearer embedded");
    const std::vector<FormPart> parts{{"mode", {}, {}, "general"},
                                      {"file", "clipboard.png", "image/png", promptifyTestImage().data}};
    QCOMPARE(StrictForm::parse(headerOf(request, "Content-Type"), request.body), std::optional(parts));
    QVERIFY(at_->pasteboard.texts.isEmpty());

    QVERIFY(at_->http.answer(200, json("{'prompt': 'A red square.'}")));
    QTRY_VERIFY(at_->result.isShown());
    QCOMPARE(at_->pasteboard.texts, QStringList(u"A red square."_s));
    QCOMPARE(at_->toasts.dismissals, 1);
    QCOMPARE(at_->sounds.completions, 1);
    QCOMPARE(at_->result.model().styleLabel(), u"General Purpose"_s);
    QVERIFY(!at_->result.model().sourceImage().isNull());
    QVERIFY(at_->result.model().copied());
    at_->clock.advance(1000ms);
    QVERIFY(at_->result.handleKey({.keyCode = 8, .command = true}));
    QCOMPARE(at_->pasteboard.texts.size(), 2);
    at_->clock.advance(1000ms);
    QVERIFY(at_->result.model().copied());
    at_->clock.advance(500ms);
    QVERIFY(!at_->result.model().copied());
    QVERIFY(!at_->result.handleKey({.keyCode = 8}));
    QVERIFY(at_->result.handleKey({.keyCode = keycode::kEscape}));
    QVERIFY(!at_->result.isShown() && !at_->result.handleKey({.keyCode = 8, .command = true}));
  }

  void escapeAndAClickOnTheToastEndIt() {
    at_->copyImage(kPNG);
    for (const bool isEscape : {true, false}) {
      tool_->activate();
      QTRY_VERIFY(!at_->http.waiting.empty());
      const auto leave = isEscape ? at_->targets.onEscape : at_->toasts.shown.back().first.onTap;
      const int dismissed = at_->toasts.dismissals;
      leave();
      QCOMPARE(at_->toasts.dismissals, dismissed + 1);
      QVERIFY(at_->http.answer(200, json("{'prompt': 'too late'}")));
      leave();
      QCOMPARE(at_->toasts.dismissals, dismissed + 1);
    }
    QVERIFY(at_->pasteboard.texts.isEmpty() && !at_->result.isShown() && !at_->targets.onEscape);
  }

  void whatIsNoPromptIsSaid() {
    at_->copyImage(kPNG);
    const auto failsWith = [this](const auto& answer, const QString& text) {
      tool_->activate();
      QTRY_VERIFY(!at_->http.waiting.empty());
      QVERIFY(at_->http.answer(answer));
      QCOMPARE(at_->toast(), u"Image to Prompt failed|%1|8"_s.arg(text));
      QCOMPARE(at_->toasts.shown.back().first.icon, u"xmark.octagon.fill"_s);
    };
    failsWith(HttpResponse{402, {}, QByteArray(100, 'x')}, u"Processing failed (HTTP 402) "_s + QString(80, u'x'));
    failsWith(HttpResponse{200, {}, "{}"}, u"No prompt in response: {}"_s);
    const HttpError late{HttpError::Reason::timedOut, {}};
    failsWith(std::unexpected(late), late.description());
    at_->builtIn.place = std::unexpected(ServiceError{ServiceError::Reason::configuration, u"There is none."_s});
    tool_->activate();
    QTRY_COMPARE(at_->toast(), u"Image to Prompt failed|There is none.|8"_s);
    QVERIFY(at_->pasteboard.texts.isEmpty() && !at_->result.isShown());
    QCOMPARE(at_->sounds.completions, 0);
  }

  void thePromptIsFoundInManyAnswers() {
    for (const auto& [body, prompt] : {
             Body{"{'prompt': '', 'description': 'd', 'result': 'r'}", u"d"_s},
             Body{"{'text': 't', 'prompt': 'p'}", u"p"_s},
             Body{"{'prompt': 5, 'result': ' r '}", u" r "_s},
             Body{"{'prompt': '', 'data': {'prompt': 'inner', 'text': 'other'}}", u"inner"_s},
             Body{"{'data': {'text': 'other'}}", {}},
             Body{"  a plain text\n", u"a plain text"_s},
             Body{"[{'prompt': 'p'}]", {}},
             Body{"{'prompt': 'cut off", u"{\"prompt\": \"cut off"_s},
             Body{" \n", {}},
         })
      QCOMPARE(PromptifyClient::extractPrompt(json(body)).value_or(QString()), prompt);
  }

  void withoutAnImageOrThePermissionItIsTold() {
    tool_->activate();
    QTRY_COMPARE(at_->toast(), u"No image on the clipboard|Copy an image first, then press ⌃⌥P|4"_s);
    at_->set(PromptStyleSetting::ui, ImageSource::liveSelection);
    at_->permissions.screenRecording = PermissionState::notGranted;
    tool_->activate();
    QCOMPARE(at_->toast(),
             u"Screen Recording permission needed|Enable Vantle in Settings → Privacy, then relaunch|8"_s);
    QCOMPARE(at_->toasts.shown.back().first.icon, u"rectangle.dashed.badge.record"_s);
    QCOMPARE(at_->permissions.prompts, 1);
    QCOMPARE(at_->permissions.pages, std::vector{Permission::screenRecording});
  }

  void aRegionIsDescribedInTheStyleThatIsAskedFor() {
    at_->set(PromptStyleSetting::ask, ImageSource::liveSelection);
    at_->launcher.startedFromLauncher = true;
    tool_->activate();
    QCOMPARE(at_->regions.labels, QStringList(u"Image to Prompt"_s));
    at_->regions.select(kPNG);
    QVERIFY(at_->modes.isShown());
    at_->modes.handleKey({.keyCode = keycode::kUp});
    at_->modes.handleKey({.keyCode = keycode::kReturn});
    QTRY_COMPARE(at_->http.sent.size(), 1U);
    QCOMPARE(at_->toast(), u"Generating image focused prompt…|Esc or a click here cancels|180"_s);
    QVERIFY(at_->http.sent.front().body.contains("filename=\"selection.png\""));
    QVERIFY(at_->http.sent.front().body.contains("name=\"mode\"\r\n\r\nimage\r\n"));

    // Thinking better of it, at either question, sends nothing and says nothing.
    const std::size_t shown = at_->toasts.shown.size();
    tool_->activate();
    at_->regions.cancel();
    at_->launcher.startedFromLauncher = true;
    tool_->activate();
    at_->regions.select(kPNG);
    at_->modes.handleKey({.keyCode = keycode::kEscape});
    QCOMPARE(at_->launcher.shown, QStringList(kPromptifyID));
    QCoreApplication::processEvents();
    QCOMPARE(at_->http.sent.size(), 1U);
    QCOMPARE(at_->toasts.shown.size(), shown);
  }

  void onlyTheLastOfTwoStartsArrivesAtEveryStage_data() {
    QTest::addColumn<int>("reached");
    for (const int reached : {0, 1, 2, 3}) QTest::addRow("stage %d", reached) << reached;
  }
  /// Started anew while the image is read, before it is sent, before it is answered, and while the card is made.
  void onlyTheLastOfTwoStartsArrivesAtEveryStage() {
    QFETCH(const int, reached);
    at_->copyImage(kPNG);
    tool_->activate();
    if (reached == 1) QTRY_VERIFY(!at_->toast().isEmpty());
    if (reached >= 2) QTRY_COMPARE(at_->http.sent.size(), 1U);
    if (reached == 3) QVERIFY(at_->http.answer(200, "old"));
    at_->copyImage(kPNG + "the second");
    tool_->activate();
    const auto isLast = [this] {
      return !at_->http.waiting.empty() && at_->http.sent.back().body.contains("the second\r\n");
    };
    QTRY_VERIFY(isLast());
    while (at_->http.waiting.size() > 1) at_->http.answer(200, "old");
    settle();
    QVERIFY(!at_->result.isShown() && at_->pasteboard.texts.isEmpty());
    QVERIFY(at_->http.answer(200, "new") && at_->http.waiting.empty());
    QTRY_VERIFY(at_->result.isShown());
    settle();
    QCOMPARE(at_->pasteboard.texts, QStringList(u"new"_s));
    QCOMPARE(at_->sounds.completions, 1);
  }

  /// The user sees no more of it, whatever the next start comes to.
  void aStartThatFindsNothingEndsTheOneBeforeToo() {
    at_->copyImage(kPNG);
    tool_->activate();
    QTRY_COMPARE(at_->http.sent.size(), 1U);
    at_->pasteboard.data.clear();
    tool_->activate();
    QTRY_VERIFY(at_->toast().startsWith(u"No image on the clipboard"_s));
    QVERIFY(at_->http.answer(200, "old"));
    settle();
    QVERIFY(!at_->result.isShown() && at_->pasteboard.texts.isEmpty());
  }

  void aNewImageIsAskedForAnew() {
    at_->set(PromptStyleSetting::ask);
    at_->copyImage(kPNG);
    tool_->activate();
    QTRY_VERIFY(at_->modes.isShown());
    at_->copyImage(kPNG + "the second");
    tool_->activate();
    QVERIFY(!at_->modes.isShown());
    QTRY_VERIFY(at_->modes.isShown());
    at_->modes.handleKey({.keyCode = keycode::kReturn});
    QTRY_COMPARE(at_->http.sent.size(), 1U);
    QVERIFY(at_->http.sent.front().body.contains(kPNG + "the second\r\n"));
  }

  void theCardIsAsHighAsItsTextWithinBounds() {
    const auto height = [this](int characters) {
      at_->result.show(QString(characters, u'x'), {}, {});
      return at_->result.model().bodyHeight();
    };
    QCOMPARE(height(17), 72);
    QCOMPARE(height(100), 132);
    QCOMPARE(height(5000), 380);
  }

  void theSettingsAreKept() {
    const QString path = at_->folders.file(u"Promptify/settings.json"_s);
    at_->set(PromptStyleSetting::ask, ImageSource::liveSelection);
    QVERIFY(PromptifyStore(path).value() == at_->settings.value());
    QCOMPARE(readFile(path).simplified(), "{ \"source\": \"liveSelection\", \"style\": \"ask\" }");
    QVERIFY(writeFile(path, json("{'style': 'haiku', 'source': 'liveSelection'}")));
    QVERIFY(PromptifyStore(path).value() == PromptifySettings());
    QCOMPARE(QImage::fromData(promptifyTestImage().data, "png").size(), QSize(1, 1));
  }

 private:
  /// What is under way in the background comes to its end.
  static void settle() {
    for (int turn = 0; turn < 10; ++turn) {
      QThreadPool::globalInstance()->waitForDone();
      QCoreApplication::processEvents();
    }
  }
  static QByteArray headerOf(const HttpRequest& request, const QByteArray& name) {
    for (const auto& [key, value] : request.headers)
      if (key == name) return value;
    return {};
  }

  std::unique_ptr<PromptWorld> at_;
  std::unique_ptr<PromptifyTool> tool_;
};

QTEST_GUILESS_MAIN(TestPromptifyTool)
#include "test_promptify_tool.moc"
