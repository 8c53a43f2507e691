#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>
#include <QThreadPool>

#include "support/files.h"
#include "support/quick_question_world.h"
#include "support/strict_multipart.h"

using namespace Qt::StringLiterals;

class TestQuickQuestionPanel : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void theShortcutShowsAndHidesAndTheConversationStays() {
    QuickQuestionWorld world;
    world.controller.toggle();
    QVERIFY(world.controller.isShown());
    QVERIFY(world.converse(u"1+1?"_s, u"2"_s));
    world.controller.toggle();
    QVERIFY(!world.controller.isShown());
    world.controller.toggle();
    world.controller.lostKeyboard();
    QVERIFY(!world.controller.isShown());
    QCOMPARE(world.model().exchanges().size(), 1U);
    QVERIFY(!world.press(u'n'));
  }

  void lettersAreKeysOnlyWithCommand() {
    QuickQuestionWorld world;
    world.controller.show();
    for (const QChar letter : u"scvn"_s) QVERIFY(!world.press(letter, false));
    QVERIFY(!world.press(u'x') && !world.press(u'c'));
    QVERIFY(world.converse(u"1+1?"_s, u"2"_s));
    QVERIFY(world.press(u'c'));
    QCOMPARE(world.pasteboard.texts, QStringList(u"2"_s));
    QVERIFY(world.model().copied());
    // By its place, where the layout has no such letter.
    QVERIFY(world.controller.handleKey({.keyCode = 8, .command = true, .charactersIgnoringModifiers = u"с"_s}));
    QVERIFY(world.press(u'n'));
    QVERIFY(world.model().exchanges().empty());
  }

  void escapeCancelsAndReturnsToTheLauncher() {
    QuickQuestionWorld world;
    world.launcher.startedFromLauncher = true;
    world.controller.show();
    world.ask(u"1+1?"_s);
    QVERIFY(world.isWaiting());
    world.http.deliver(AskWorld::delta(u"Tw"_s));
    QCOMPARE(world.model().partialAnswer(), u"Tw"_s);
    QVERIFY(world.controller.handleKey({.keyCode = keycode::kEscape, .shift = true}));
    QVERIFY(!world.controller.isShown() && !world.model().pending());
    QCOMPARE(world.launcher.shown, QStringList(u"quick-question"_s));
    world.stream(AskWorld::done(u"Two"_s));
    QVERIFY(world.model().exchanges().empty() && world.model().partialAnswer().isEmpty());
    QCOMPARE(world.model().question(), u"1+1?"_s);
    world.controller.show();
    QVERIFY(world.controller.handleKey(code(keycode::kEscape)));
    QCOMPARE(world.launcher.shown.size(), 1);
  }

  void aSnipIsAttachedAndAsked() {
    QuickQuestionWorld world;
    world.controller.show();
    QVERIFY(world.press(u's'));
    QCOMPARE(world.regions.labels, QStringList(u"Snip for Ask AI"_s));
    QCOMPARE(world.regions.icons, QStringList(u"questionmark.bubble"_s));
    QVERIFY(!world.controller.isShown() && world.controller.suspendAutoHide());
    // The shortcut does not bring the panel into the picture.
    world.controller.toggle();
    QVERIFY(!world.controller.isShown());
    const QByteArray capture = QuickQuestionWorld::png(200, 100);
    world.regions.select(capture);
    QVERIFY(world.controller.isShown() && !world.controller.suspendAutoHide());
    // Asked before the snip is ready, it goes along all the same.
    world.ask(u"What is it?"_s);
    QVERIFY(!world.model().pending());
    QTRY_VERIFY(world.model().pending());
    QVERIFY(world.isWaiting());
    const auto parts = StrictForm::parse(world.header("Content-Type"), world.request().body).value();
    QVERIFY((parts.back() == FormPart{"file", "attachment-1.png", "image/png", capture}));
    QVERIFY(world.model().attachments().empty() && !world.model().canAttach());
    QVERIFY(!world.press(u'v'));
    // What failed comes back with what belongs to it.
    world.http.answer(500, "oops");
    QCOMPARE(world.model().question(), u"What is it?"_s);
    QCOMPARE(world.model().attachments().size(), 1U);
    QCOMPARE(world.model().errorMessage(), u"Request failed (HTTP 500) oops"_s);

    world.press(u's');
    world.regions.cancel();
    QVERIFY(world.controller.isShown());
    QCOMPARE(world.model().attachments().size(), 1U);
  }

  void whoeverTurnsElsewhereWhileSnippingIsNotDisturbed() {
    QuickQuestionWorld world;
    world.launcher.startedFromLauncher = true;
    world.controller.show();
    world.model().setQuestion(u"What is it?"_s);
    QVERIFY(world.press(u's'));
    world.regions.loseKeyboard();
    QVERIFY(!world.controller.isShown() && !world.controller.suspendAutoHide());
    world.controller.toggle();
    QVERIFY(world.controller.isShown());
    QCOMPARE(world.model().question(), u"What is it?"_s);
    // What was snipped before another tool's selection began is not lost.
    QVERIFY(world.press(u's'));
    world.regions.begin(u"Image Ask"_s, {}, [](const auto&) {});
    world.regions.select(QuickQuestionWorld::png());
    QVERIFY(!world.controller.isShown());
    QTRY_COMPARE(world.model().attachments().size(), 1U);
    world.regions.cancel();
    world.controller.toggle();
    QVERIFY(world.controller.isShown());
  }

  void aWholeAnswerIsBrokenOffAsWell() {
    QuickQuestionWorld world;
    const QByteArray whole = "{\"answer\":\"Two\"}";
    world.controller.show();
    // Before it is known where the question goes, nothing is sent at all.
    world.ask(u"1+1?"_s);
    world.press(u'n');
    world.ask(u"1+1?"_s);
    world.controller.handleKey(code(keycode::kEscape));
    QTest::qWait(50);
    QVERIFY(world.http.sent.empty());
    for (const bool isNewStart : {false, true}) {
      world.controller.show();
      world.ask(u"1+1?"_s);
      QVERIFY(world.isWaiting());
      isNewStart ? world.press(u'n') : world.controller.handleKey(code(keycode::kEscape));
      QVERIFY(!world.model().pending());
      world.http.answer(200, whole);
      QVERIFY(world.model().exchanges().empty() && !world.model().errorMessage());
      QCOMPARE(world.model().question(), isNewStart ? QString() : u"1+1?"_s);
    }
  }

  void escapeLeavesAQuestionUnaskedThatWaitsForItsImage() {
    QuickQuestionWorld world;
    world.controller.show();
    world.controller.attachImage(QImage::fromData(QuickQuestionWorld::png()));
    world.ask(u"What is it?"_s);
    world.controller.handleKey(code(keycode::kEscape));
    QTRY_COMPARE(world.model().attachments().size(), 1U);
    QVERIFY(!world.model().pending());
    QCOMPARE(world.model().question(), u"What is it?"_s);
  }

  void whatIsAttachedComesBackWithEscapeAndGoesWithANewStart() {
    QuickQuestionWorld world;
    world.controller.show();
    QVERIFY(world.attach(2));
    world.ask(u"What are these?"_s);
    QVERIFY(world.isWaiting());
    world.controller.handleKey(code(keycode::kEscape));
    QCOMPARE(world.model().attachments().size(), 2U);
    world.controller.show();
    world.press(u'n');
    QVERIFY(world.model().attachments().empty());
  }

  void imagesThatAreReadAtOnceAreNoMoreThanSix() {
    QuickQuestionWorld world;
    world.controller.show();
    for (int i = 0; i < 9; ++i) world.controller.attachImage(QImage::fromData(QuickQuestionWorld::png()));
    // There is nothing to ask yet: what is typed later is not sent by itself.
    world.controller.submit();
    world.model().setQuestion(u"What"_s);
    QThreadPool::globalInstance()->waitForDone();
    QTRY_COMPARE(world.model().attachments().size(), 6U);
    QTest::qWait(20);
    QCOMPARE(world.model().attachments().size(), 6U);
    QVERIFY(!world.model().pending());
  }

  void withoutThePermissionAPanelSaysWhatIsMissing() {
    QuickQuestionWorld world;
    world.permissions.screenRecording = PermissionState::notGranted;
    world.controller.show();
    QVERIFY(world.press(u's'));
    QVERIFY(!world.regions.isSelecting() && world.controller.isShown());
    QCOMPARE(world.permissions.prompts, 1);
    QVERIFY(world.model().errorMessage()->contains(u"Screen Recording permission"));
  }

  void thereIsRoomForSixImages() {
    QuickQuestionWorld world;
    world.controller.show();
    QVERIFY(world.attach(5));
    QVERIFY(world.model().canAttach());
    QVERIFY(world.attach(6));
    QVERIFY(!world.model().canAttach());
    QVERIFY(!world.press(u'v'));
    world.press(u's');
    world.controller.attachFile();
    QVERIFY(!world.regions.isSelecting() && world.choices.empty());
    const int id = world.model().attachments()[2].id;
    world.model().detach(id);
    QCOMPARE(world.model().attachments().size(), 5U);
    // Of more than fit, the first are taken.
    QList<QUrl> urls;
    for (int i = 0; i < 4; ++i) {
      const QString path = world.directory.filePath(u"%1.png"_s.arg(i));
      QVERIFY(writeFile(path, QuickQuestionWorld::png(10 + i)));
      urls.append(QUrl::fromLocalFile(path));
    }
    world.controller.attachFile();
    QVERIFY(!world.controller.isShown());
    world.choices.back()(urls);
    QVERIFY(world.controller.isShown());
    QTRY_COMPARE(world.model().attachments().size(), 6U);
    QCOMPARE(world.model().attachments().back().thumbnail.width(), 10);
  }

  void pasteTakesAnImageOrElseTheText() {
    QuickQuestionWorld world;
    world.controller.show();
    QSignalSpy texts(&world.controller, &QuickQuestionPanelController::textPasted);
    world.pasteboard.data = {{PasteboardFormat::jpeg, QuickQuestionWorld::png(30, 20, "JPEG")}};
    QVERIFY(world.press(u'v'));
    QTRY_COMPARE(world.model().attachments().size(), 1U);
    QVERIFY(world.model().images()[0].startsWith("\x89PNG"));
    QVERIFY(texts.isEmpty());
    world.pasteboard.data.clear();
    world.pasteboard.copy({{{u"text"_s, "words"}}});
    QVERIFY(world.press(u'v'));
    // Asked in the same breath, it is asked with what was pasted.
    world.ask(u"What are"_s);
    QTRY_COMPARE(texts.size(), 1);
    QCOMPARE(texts[0][0].toString(), u"words"_s);
    QTRY_VERIFY(world.model().pending());
  }

  void aQuestionDoesNotWaitForAPasteThatThereIsNoRoomFor() {
    QuickQuestionWorld world;
    world.controller.show();
    QVERIFY(world.attach(5));
    world.pasteboard.data = {{PasteboardFormat::jpeg, QuickQuestionWorld::png(30, 20, "JPEG")}};
    QVERIFY(world.press(u'v'));
    // Another one comes before it.
    world.model().attach(attachmentOf(QuickQuestionWorld::png()).value());
    world.ask(u"What are these?"_s);
    QVERIFY(!world.model().pending());
    QVERIFY(world.isWaiting());
    QCOMPARE(world.model().pendingThumbnails().size(), 6U);
  }

  void whatIsNoImageIsSaidSo() {
    QuickQuestionWorld world;
    world.controller.show();
    const QString path = world.directory.filePath(u"notes.png"_s);
    QVERIFY(writeFile(path, "not a picture"));
    world.model().setQuestion(u"What is it?"_s);
    world.controller.attachFiles({QUrl::fromLocalFile(path), QUrl(u"https://example.com/a.png"_s)});
    world.controller.submit();
    QTRY_COMPARE(world.model().errorMessage(), u"notes.png cannot be attached: it is not an image that can be read"_s);
    // The question waits for the user to look at that.
    QVERIFY(!world.model().pending());
    QCOMPARE(world.model().question(), u"What is it?"_s);
  }

  void largePicturesAreMadeSmaller() {
    const auto made = attachmentOf(QImage::fromData(QuickQuestionWorld::png(6000, 4000)));
    const QSize size = QImage::fromData(made.value().png).size();
    QVERIFY(size.width() * size.height() <= 3840 * 2160 && size.width() > 3400);
    QVERIFY(made->thumbnail.width() <= 200);
    QVERIFY(!attachmentOf(QImage()));
    // In bytes too, whatever they are made of: six must go into one question.
    QImage noise(2600, 1600, QImage::Format_RGB32);
    QRandomGenerator(1).fillRange(reinterpret_cast<quint32*>(noise.bits()), noise.sizeInBytes() / 4);
    const auto photograph = attachmentOf(noise);
    QVERIFY(6 * photograph->png.size() < 59'000'000 && QImage::fromData(photograph->png).width() > 1200);
    const QByteArray heavy = QuickQuestionWorld::png() + QByteArray(20'000'000, '\0');
    QVERIFY(attachmentOf(heavy).value().png.size() < 1'000);
    const QTemporaryDir directory;
    QFile file(directory.filePath(u"huge.png"_s));
    QVERIFY(file.open(QFile::WriteOnly) && file.resize(256'000'001));
    QCOMPARE(attachmentOfFile(file.fileName()).error(), u"huge.png cannot be attached: it is larger than 256 MB"_s);
  }

  void aNewStartForgetsWhatIsUnderWay() {
    QuickQuestionWorld world;
    world.controller.show();
    world.controller.attachImage(QImage::fromData(QuickQuestionWorld::png()));
    world.ask(u"What is it?"_s);
    world.press(u'n');
    QVERIFY(world.model().question().isEmpty());
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
    QVERIFY(world.model().attachments().empty() && !world.model().pending());
  }
};

QTEST_GUILESS_MAIN(TestQuickQuestionPanel)
#include "test_quick_question_panel.moc"
