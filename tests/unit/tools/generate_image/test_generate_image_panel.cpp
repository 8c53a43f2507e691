#include <QSignalSpy>

#include "support/files.h"
#include "support/generate_image_stage.h"

using namespace Qt::StringLiterals;

using Area = GenerateImageModel::Area;
using Stage = GenerateImageStage;

class TestGenerateImagePanel : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() { stage_ = std::make_unique<Stage>(); }
  void cleanup() { stage_.reset(); }

  void aPromptBecomesAnImageThatIsKept() {
    stage_->settings.update([](auto& settings) { settings.options = {ImageSize::landscape, ImageQuality::low}; });
    stage_->generate(u"  a fox\n"_s);
    QVERIFY(stage_->model().isGenerating() && stage_->model().showsProgress());
    QCOMPARE(stage_->lastForm(),
             (std::map<QByteArray, QByteArray>{{"prompt", "a fox"}, {"size", "1536x1024"}, {"quality", "low"}}));
    stage_->answer(pngPicture());
    QCOMPARE(stage_->model().shown()->image.png, pngPicture());
    QCOMPARE(stage_->history.entries().size(), 1U);
    QCOMPARE(stage_->history.entries()[0].prompt, u"a fox"_s);
    QCOMPARE(stage_->model().selectedID(), stage_->history.entries()[0].id);
    QVERIFY(stage_->toasts.shown.empty());
  }

  void anEmptyPromptSendsNothing() {
    stage_->model().setPrompt(u" \n"_s);
    QVERIFY(stage_->key(keycode::kReturn, true));
    QVERIFY(!stage_->model().isGenerating());
    QCOMPARE(stage_->model().notice(), u"Describe the image first."_s);
    QVERIFY(!stage_->key(keycode::kReturn));
  }

  void aFailureIsShownAndThePromptStays() {
    stage_->generate(u"a fox"_s);
    stage_->http.answer(500, "oops\n");
    QCOMPARE(stage_->model().error(), u"Generation failed (HTTP 500) oops"_s);
    QCOMPARE(stage_->model().prompt(), u"a fox"_s);
    stage_->key(keycode::kReturn, true);
    QVERIFY(stage_->model().error().isEmpty() && stage_->isSent());
  }

  void hiddenItGoesOnAndSaysWhenItIsDone() {
    stage_->generate(u"a fox"_s);
    stage_->controller.toggle();
    QVERIFY(!stage_->isPanelUp && stage_->model().isGenerating());
    stage_->answer(pngPicture());
    QCOMPARE(stage_->toast(), u"Your image is ready|Click here to see it."_s);
    QVERIFY(!stage_->toasts.shown.back().first.thumbnail.isNull());
    QCOMPARE(stage_->history.entries().size(), 1U);
    stage_->toasts.shown.back().first.onTap();
    QVERIFY(stage_->isPanelUp && stage_->model().shown());
    stage_->generate(u"another"_s);
    stage_->controller.hide();
    stage_->http.answer(500, "oops");
    QCOMPARE(stage_->toast(), u"Image not generated|Generation failed (HTTP 500) oops"_s);
  }

  void snipsGoWithThePrompt() {
    QVERIFY(stage_->press(u's'));
    stage_->controller.toggle();
    QVERIFY(!stage_->isPanelUp);
    QCOMPARE(stage_->regions.labels, QStringList(u"Add Snip"_s));
    QCOMPARE(stage_->regions.icons, QStringList(u"plus.viewfinder"_s));
    stage_->snip(pngPicture({10, 10}));
    QVERIFY(stage_->isPanelUp);
    stage_->press(u's');
    stage_->regions.cancel();
    QVERIFY(stage_->isPanelUp);
    QCOMPARE(stage_->model().references().size(), 1U);
    stage_->generate(u"like this"_s);
    QCOMPARE(stage_->lastForm().at("image-1.png"), pngPicture({10, 10}));
    QVERIFY(!stage_->lastForm().contains("edit"));
  }

  void aSnipCanBeChanged() {
    stage_->pasteboard.data = {{PasteboardFormat::png, pngPicture()}};
    stage_->press(u'v');
    QTRY_COMPARE(stage_->model().references().size(), 1U);
    stage_->press(u'e', true);
    QCOMPARE(stage_->regions.labels, QStringList(u"Edit this snip"_s));
    QCOMPARE(stage_->regions.icons, QStringList(u"wand.and.stars"_s));
    stage_->snip(pngPicture({10, 10}));
    QCOMPARE(stage_->model().references().size(), 1U);
    stage_->generate(u"without the text"_s);
    QCOMPARE(stage_->lastForm().at("edit"), "true");
    QCOMPARE(stage_->lastForm().at("image-1.png"), pngPicture({10, 10}));
  }

  void withoutThePermissionThereAreNoSnips() {
    stage_->permissions.screenRecording = PermissionState::notGranted;
    stage_->press(u's');
    QCOMPARE(stage_->toast(),
             u"Screen Recording permission needed|Snipping needs the Screen Recording permission — grant it in "
             u"Settings, then relaunch Vantle."_s);
    QVERIFY(stage_->regions.labels.isEmpty() && stage_->isPanelUp);
    QCOMPARE(stage_->permissions.pages, std::vector{Permission::screenRecording});
  }

  void fourReferencesAreTheMost() {
    const QString picture = stage_->folders.file(u"a.png"_s);
    QVERIFY(writeFile(picture, pngPicture()));
    stage_->press(u'o');
    QVERIFY(!stage_->isPanelUp);
    stage_->chosenImages({picture, picture, picture, picture, picture});
    QVERIFY(stage_->isPanelUp);
    QCOMPARE(stage_->model().notice(), u"At most 4 images go with a prompt."_s);
    QTRY_COMPARE(stage_->model().references().size(), 4U);
    stage_->press(u's');
    QVERIFY(stage_->regions.labels.isEmpty());
    stage_->model().removeReference(stage_->model().references()[1].id);
    QVERIFY(stage_->model().canAttach());
  }

  void whatIsNoPictureIsTold() {
    const QString text = stage_->folders.file(u"a.png"_s);
    QVERIFY(writeFile(text, "no picture"));
    stage_->controller.attach({QUrl::fromLocalFile(text), QUrl(u"https://example.com/a.png"_s)});
    QTRY_COMPARE(stage_->model().notice(), u"That is not an image that can be read, or it is too large."_s);
    QVERIFY(stage_->model().references().empty());
  }

  void aStartWaitsForItsReferences() {
    stage_->model().setPrompt(u"like this"_s);
    stage_->controller.attachImage(pngPicture({1500, 1500}));
    stage_->key(keycode::kReturn, true);
    QVERIFY(!stage_->model().isGenerating());
    QVERIFY(stage_->isSent());
    QVERIFY(stage_->lastForm().contains("image-1.png"));
  }

  void referencesAreTakenAwayWithTheKeys() {
    for (const int edge : {1, 2, 3}) stage_->model().attach(pngPicture({edge, edge}), {});
    const auto edges = [this] {
      QList<int> found;
      for (const auto& one : stage_->model().references()) found.append(QImage::fromData(one.png).width());
      return found;
    };
    QVERIFY(!stage_->key(keycode::kDelete));
    stage_->key(keycode::kTab);
    QCOMPARE(stage_->model().area(), Area::references);
    QCOMPARE(stage_->model().selectedReference(), stage_->model().references()[0].id);
    stage_->key(keycode::kRight);
    QVERIFY(stage_->key(keycode::kDelete));
    QCOMPARE(edges(), QList({1, 3}));
    stage_->key(keycode::kRight);
    stage_->key(keycode::kDelete);
    QCOMPARE(edges(), QList({1}));
    stage_->key(keycode::kEscape);
    QCOMPARE(stage_->model().area(), Area::prompt);
    QVERIFY(stage_->controller.isShown() && stage_->model().selectedReference() == 0);
    stage_->key(keycode::kTab);
    stage_->key(keycode::kDelete);
    QVERIFY(edges().isEmpty());
    QCOMPARE(stage_->model().area(), Area::prompt);
  }

  void tabGoesRoundWhatThereIs() {
    stage_->make(u"one"_s);
    stage_->model().attach(pngPicture(), {});
    QList<Area> areas;
    for (int turn = 0; turn < 3; ++turn) {
      stage_->key(keycode::kTab);
      areas.append(stage_->model().area());
    }
    QCOMPARE(areas, QList({Area::references, Area::history, Area::prompt}));
    stage_->key(keycode::kTab);
    QVERIFY(!stage_->controller.handleKey({.keyCode = 0, .characters = u"x"_s}));
    QCOMPARE(stage_->model().area(), Area::prompt);
  }

  void referencesStandInTheOrderInWhichTheyCame() {
    stage_->controller.attachImage(pngPicture({3000, 3000}));
    QImage dropped(20, 20, QImage::Format_RGB32);
    dropped.fill(Qt::blue);
    stage_->controller.attachPicture(dropped);
    QTRY_COMPARE(stage_->model().references().size(), 2U);
    QCOMPARE(QImage::fromData(stage_->model().references()[1].png).size(), QSize(20, 20));
  }

  void aRunEndsAtOnceAtEveryStage_data() {
    QTest::addColumn<int>("reached");
    QTest::addColumn<QChar>("letter");
    for (const int reached : {0, 1, 2, 3}) {
      QTest::addRow("Escape, stage %d", reached) << reached << QChar();
      QTest::addRow("a new prompt, stage %d", reached) << reached << QChar(u'n');
    }
  }
  /// While its references are read, before it is sent, before it is answered, and while the answer is decoded.
  void aRunEndsAtOnceAtEveryStage() {
    QFETCH(const int, reached);
    QFETCH(const QChar, letter);
    stage_->model().setPrompt(u"doomed"_s);
    if (reached == 0) stage_->controller.attachImage(pngPicture({2000, 2000}));
    stage_->key(keycode::kReturn, true);
    if (reached >= 2) QVERIFY(stage_->isSent());
    if (reached == 3) stage_->http.answer(200, imageAnswer(pngPicture({2000, 2000})));
    QVERIFY(letter.isNull() ? stage_->key(keycode::kEscape) : stage_->press(letter));
    QVERIFY(!stage_->model().isGenerating() && stage_->controller.isShown());
    // Behind what was read for it.
    stage_->controller.attachImage(pngPicture({7, 7}));
    QTRY_COMPARE(stage_->model().references().size(), reached == 0 && letter.isNull() ? 2U : 1U);
    stage_->settle();
    while (stage_->http.answer(200, imageAnswer(pngPicture()))) stage_->settle();
    QVERIFY(!stage_->model().shown() && stage_->history.entries().empty() && stage_->historyFiles().isEmpty());
    QVERIFY(stage_->toasts.shown.empty() && stage_->pasteboard.images.empty() && stage_->pasteboard.texts.isEmpty());
    if (reached == 0) QVERIFY(stage_->http.sent.empty());
  }

  void onlyTheLastOfTwoStartsArrivesAtEveryStage_data() {
    QTest::addColumn<int>("reached");
    for (const int reached : {0, 1, 2, 3}) QTest::addRow("stage %d", reached) << reached;
  }
  void onlyTheLastOfTwoStartsArrivesAtEveryStage() {
    QFETCH(const int, reached);
    stage_->model().setPrompt(u"doomed"_s);
    if (reached == 0) stage_->controller.attachImage(pngPicture({2000, 2000}));
    stage_->key(keycode::kReturn, true);
    if (reached >= 2) QVERIFY(stage_->isSent());
    if (reached == 3) stage_->http.answer(200, imageAnswer(pngPicture({9, 9})));
    stage_->model().setPrompt(u"last"_s);
    stage_->key(keycode::kReturn, true);
    if (reached == 2) stage_->http.answer(200, imageAnswer(pngPicture({9, 9})));
    QVERIFY(stage_->isSent());
    stage_->settle();
    QVERIFY(stage_->model().isGenerating() && stage_->history.entries().empty());
    stage_->answer(pngPicture({20, 20}));
    QCOMPARE(stage_->history.entries().size(), 1U);
    QCOMPARE(stage_->model().shown()->request.prompt, u"last"_s);
  }

  void aPasteIntoThePromptBeforeIsLost() {
    QSignalSpy pasted(&stage_->controller, &GenerateImagePanelController::textPasted);
    stage_->pasteboard.writeText(u"words"_s);
    stage_->press(u'v');
    stage_->press(u'n');
    stage_->pasteboard.data = {{PasteboardFormat::png, pngPicture()}};
    stage_->press(u'v');
    stage_->press(u'n');
    stage_->settle();
    QVERIFY(pasted.empty() && stage_->model().references().empty());
  }

  void withoutAnImageTextIsPasted() {
    QSignalSpy pasted(&stage_->controller, &GenerateImagePanelController::textPasted);
    stage_->pasteboard.writeText(u"words"_s);
    stage_->press(u'v');
    QTRY_COMPARE(pasted.size(), 1);
    QCOMPARE(pasted[0][0].toString(), u"words"_s);
    stage_->pasteboard.data = {{PasteboardFormat::png, pngPicture()}};
    stage_->press(u'v', true);
    QTRY_COMPARE(pasted.size(), 2);
    QVERIFY(stage_->model().references().empty());
  }

  void escapeLeadsBackToTheLauncher() {
    stage_->controller.hide();
    stage_->launcher.startedFromLauncher = true;
    stage_->controller.show();
    stage_->key(keycode::kEscape);
    QCOMPARE(stage_->launcher.shown, QStringList(u"generate-image"_s));
    QVERIFY(!stage_->press(u's'));
  }

 private:
  std::unique_ptr<Stage> stage_;
};

QTEST_GUILESS_MAIN(TestGenerateImagePanel)
#include "test_generate_image_panel.moc"
