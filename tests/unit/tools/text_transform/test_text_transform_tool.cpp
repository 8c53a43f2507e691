#include <QJsonDocument>
#include <QTest>

#include "support/strict_server.h"
#include "support/transform_world.h"

using namespace Qt::StringLiterals;

using Outcome = SelectionReplacer::Outcome;

namespace {

const QByteArray kAnswer = "{\"text\": \"I have three cats.\"}";
const PasteboardContents kEarlier{{{.name = u"text/plain"_s, .bytes = "before"}}};

}  // namespace

class TestTextTransformTool : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    world_ = std::make_unique<TransformWorld>();
    tool_ = world_->makeTool(world_->permissions);
    world_->select(u"i has three cat\n"_s);
  }
  void cleanup() {
    tool_.reset();
    world_.reset();
  }

  void theResultIsCopied() {
    start(keycode::kReturn);
    QCOMPARE(world_->toast(), u"Transforming…|Esc or a click here cancels|120"_s);
    QCOMPARE(shown().icon, u"wand.and.stars"_s);
    QCOMPARE(shown().tone, ToastTone::accent);
    const auto body = QJsonDocument::fromJson(world_->http.sent.front().body).object();
    QCOMPARE(body, (QJsonObject{{u"text"_s, u"i has three cat\n"_s}, {u"action"_s, u"improve"_s}}));

    world_->preferences.update([](Preferences& values) { values.toastDuration = 6; });
    QVERIFY(world_->http.answer(200, kAnswer));
    QCOMPARE(world_->toast(), u"Result copied to clipboard|I have three cats.|6"_s);
    QCOMPARE(shown().icon, u"checkmark.circle.fill"_s);
    QCOMPARE(shown().tone, ToastTone::success);
    shown().onTap();
    QCOMPARE(world_->pasteboard.texts, (QStringList{u"I have three cats."_s, u"I have three cats."_s}));
    QVERIFY(world_->replacer.restored.empty());
    QVERIFY(world_->replacer.replaced.empty());
  }

  void whereEscapeCannotBeSeenTheToastDoesNotPromiseIt() {
    world_->targets.seesEscape = false;
    start(keycode::kReturn);
    QCOMPARE(world_->toast(), u"Transforming…|Click here to cancel|120"_s);
  }

  void theResultIsTypedOverTheSelection() {
    world_->useReplace();
    start(keycode::kReturn);
    QVERIFY(world_->http.answer(200, kAnswer));
    QCOMPARE(world_->replacer.replaced.size(), 1U);
    QCOMPARE(world_->replacer.replaced.front().second, u"I have three cats."_s);
    QCOMPARE(world_->replacer.replaced.front().first.owner, KeyTarget{7});
    QCOMPARE(world_->toasts.shown.size(), 1U);
    world_->replacer.finish(Outcome::typed);
    QCOMPARE(world_->toast(), u"Selection transformed|I have three cats.|8"_s);
    QCOMPARE(shown().tone, ToastTone::success);
    QVERIFY(world_->pasteboard.texts.isEmpty());
    tool_->activate();
    QTRY_VERIFY(world_->picker.isShown());
  }

  void aResultThatCannotBeTypedIsNotLost() {
    world_->useReplace();
    start(keycode::kReturn);
    QVERIFY(world_->http.answer(200, kAnswer));
    world_->replacer.finish(Outcome::copied);
    QCOMPARE(world_->toast(), u"Result copied to clipboard|It could not be typed there. I have three cats.|10"_s);
    start(keycode::kReturn);
    QVERIFY(world_->http.answer(200, kAnswer));
    world_->replacer.finish(std::unexpected(KeyEventError{u"No key for it"_s}));
    QCOMPARE(world_->toast(),
             u"Result copied to clipboard|It could not be typed: No key for it. I have three cats.|10"_s);
    QCOMPARE(world_->pasteboard.texts, (QStringList{u"I have three cats."_s, u"I have three cats."_s}));
  }

  void anInstructionOfOnesOwnIsSent() {
    start(keycode::kUp, false);
    QVERIFY(world_->picker.handleKey(code(keycode::kReturn)));
    QVERIFY(world_->instruction.isShown());
    QCOMPARE(world_->toasts.shown.size(), 0U);
    world_->instruction.model().setText(u"\n as a pirate \n"_s);
    QVERIFY(!world_->instruction.handleKey(code(keycode::kReturn)));
    QVERIFY(world_->instruction.handleKey(code(keycode::kReturn, true)));
    QTRY_COMPARE(world_->http.sent.size(), 1U);
    const auto body = QJsonDocument::fromJson(world_->http.sent.front().body).object();
    QCOMPARE(body, (QJsonObject{{u"text"_s, u"i has three cat\n"_s}, {u"instruction"_s, u"as a pirate"_s}}));
    QVERIFY(world_->instruction.model().text().isEmpty());
  }

  void whoeverThinksBetterOfItGetsTheClipboardBack_data() {
    QTest::addColumn<bool>("isCustom");
    QTest::addColumn<QString>("text");
    QTest::addColumn<std::uint32_t>("key");
    QTest::addRow("the picker") << false << QString() << keycode::kEscape;
    QTest::addRow("the instruction") << true << u"as a pirate"_s << keycode::kEscape;
    QTest::addRow("a blank instruction") << true << u" \n "_s << keycode::kReturn;
  }
  void whoeverThinksBetterOfItGetsTheClipboardBack() {
    QFETCH(const bool, isCustom);
    QFETCH(const QString, text);
    QFETCH(const std::uint32_t, key);
    if (isCustom) {
      start(keycode::kUp, false);
      QVERIFY(world_->picker.handleKey(code(keycode::kReturn)));
      world_->instruction.model().setText(text);
      QVERIFY(world_->instruction.handleKey(code(key, true)));
    } else {
      start(key, false);
    }
    QVERIFY(!world_->picker.isShown() && !world_->instruction.isShown());
    QCOMPARE(world_->replacer.restored, std::vector{kEarlier});
    QVERIFY(world_->toasts.shown.empty());
    QVERIFY(world_->pasteboard.texts.isEmpty());
    QVERIFY(world_->http.sent.empty());
    tool_->activate();
    QTRY_VERIFY(world_->picker.isShown());
    QCOMPARE(world_->picker.model().selectionIndex(), 0);
  }

  void withoutASelectionTheUserIsTold_data() {
    QTest::addColumn<bool>("hasText");
    QTest::addRow("nothing") << false;
    QTest::addRow("white space") << true;
  }
  void withoutASelectionTheUserIsTold() {
    QFETCH(const bool, hasText);
    world_->reader.selection.text = hasText ? std::optional(u" \n\t"_s) : std::nullopt;
    tool_->activate();
    QTRY_COMPARE(world_->toast(), u"Select some text first|Highlight text in any app, then press ⌃⌥\\|4"_s);
    QCOMPARE(shown().icon, u"text.cursor"_s);
    QCOMPARE(shown().iconColor, QColor(Qt::white));
    QCOMPARE(world_->replacer.restored, std::vector{kEarlier});
    world_->shortcut.clear();
    tool_->activate();
    QTRY_COMPARE(world_->toast(),
                 u"Select some text first|Highlight text in any app, then start AI Text Transform again|4"_s);
    QVERIFY(!world_->picker.isShown());
  }

  void withoutThePermissionNothingIsRead() {
    world_->permissions.trusted = false;
    tool_->activate();
    QCoreApplication::processEvents();
    QCOMPARE(world_->permissions.prompts, 1);
    QCOMPARE(world_->toast(), u"Accessibility permission needed|Enable Vantle in Settings → Privacy|6"_s);
    QCOMPARE(shown().icon, u"lock.shield"_s);
    QCOMPARE(world_->reader.reads, 0);
    QVERIFY(world_->replacer.restored.empty());
  }

  void failuresAreToldAndTheClipboardIsPutBack() {
    start(keycode::kReturn);
    QVERIFY(world_->http.answer(500, "a\nb\n"));
    QCOMPARE(world_->toast(), u"AI Text Transform failed|Request failed (HTTP 500) a\\nb|8"_s);
    QCOMPARE(shown().icon, u"xmark.octagon.fill"_s);
    QCOMPARE(shown().tone, ToastTone::failure);
    QCOMPARE(world_->replacer.restored, std::vector{kEarlier});
    start(keycode::kReturn);
    QVERIFY(world_->http.answer(200, "{}"));
    QCOMPARE(world_->toast(), u"AI Text Transform failed|No text in response: {}|8"_s);
    start(keycode::kReturn);
    QVERIFY(world_->http.answer(std::unexpected(HttpError{HttpError::Reason::timedOut, {}})));
    QCOMPARE(world_->toast(), u"AI Text Transform failed|The service did not answer in time.|8"_s);
    QCOMPARE(world_->replacer.restored.size(), 3U);
    QVERIFY(world_->pasteboard.texts.isEmpty());
  }

  void fromTheLauncherEscapeLeadsBackThere() {
    world_->launcher.startedFromLauncher = true;
    start(keycode::kEscape, false);
    QCOMPARE(world_->launcher.shown, QStringList(kAITextTransformID));
    start(keycode::kEscape, false);
    QCOMPARE(world_->launcher.shown.size(), 1);
  }

  void aLongResultIsShortenedInTheToastOnly() {
    const QString result = u"First line\n\n"_s + QString(5000, u'x');
    start(keycode::kReturn);
    QVERIFY(world_->http.answer(200, result.toUtf8()));
    QCOMPARE(world_->pasteboard.texts, QStringList(result));
    QCOMPARE(shown().detail, u"First line "_s + QString(289, u'x') + u'…');
    QCOMPARE(shown().detailLineLimit, 3);
  }

 private:
  /// Activates the tool and presses a key in its picker; `sends`: until the request is there.
  void start(std::uint32_t key, bool sends = true) {
    const std::size_t sent = world_->http.sent.size();
    tool_->activate();
    QTRY_VERIFY(world_->picker.isShown());
    QVERIFY(world_->picker.handleKey(code(key)));
    if (sends) QTRY_COMPARE(world_->http.sent.size(), sent + 1);
  }
  const ToastContent& shown() const { return world_->toasts.shown.back().first; }

  std::unique_ptr<TransformWorld> world_;
  std::unique_ptr<AITextTransformTool> tool_;
};

QTEST_GUILESS_MAIN(TestTextTransformTool)
#include "test_text_transform_tool.moc"
