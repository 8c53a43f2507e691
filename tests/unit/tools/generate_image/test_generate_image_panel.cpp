#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

#include "support/files.h"
#include "support/generate_image_world.h"
#include "support/strict_multipart.h"

using namespace Qt::StringLiterals;

using Area = GenerateImageModel::Area;

namespace {

struct Stage : GenerateImageWorld {
  Stage() { controller.show(); }

  GenerateImageModel& model() { return controller.model(); }
  bool press(QChar letter, bool shift = false, bool hasSelection = false) {
    return controller.handleKey({.command = true, .shift = shift, .charactersIgnoringModifiers = QString(letter)},
                                hasSelection);
  }
  bool key(std::uint32_t code, bool command = false) {
    return controller.handleKey({.keyCode = code, .command = command});
  }
  void generate(const QString& prompt) {
    model().setPrompt(prompt);
    key(keycode::kReturn, true);
    if (!isSent()) qFatal("nothing was sent");
  }
  bool isSent() {
    return QTest::qWaitFor([this] { return !http.waiting.empty(); }, 2000);
  }
  /// Lets the service answer the oldest request that waits, and waits for what comes of it.
  void answer(const QByteArray& png) {
    http.answer(200, imageAnswer(png));
    if (!QTest::qWaitFor([this] { return !model().isGenerating(); })) qFatal("it is still generating");
  }
  void make(const QString& prompt, const QByteArray& png = pngPicture()) {
    generate(prompt);
    answer(png);
  }
  void snip(const QByteArray& png) {
    regions.select(png);
    const std::size_t before = model().references().size();
    if (!QTest::qWaitFor([&] { return model().references().size() != before || model().isEdit(); }))
      qFatal("not attached");
  }
  std::map<QByteArray, QByteArray> lastForm() const {
    std::map<QByteArray, QByteArray> values;
    const HttpRequest& request = http.sent.back();
    const auto parts = StrictForm::parse(headerOf(request, "Content-Type"), request.body);
    if (!parts) qFatal("not a form");
    for (const FormPart& part : *parts) values[part.filename.isNull() ? part.name : part.filename] = part.content;
    return values;
  }

  GenerateImagePanelController controller{controllerServices(),
                                          [this] { return std::make_unique<CountingPanel>(isPanelUp); }};
};

}  // namespace

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

  void escapeCancelsAtOnceAndNothingComesLater() {
    stage_->make(u"before"_s);
    stage_->generate(u"a fox"_s);
    QElapsedTimer timer;
    timer.start();
    QVERIFY(stage_->key(keycode::kEscape));
    QVERIFY(!stage_->model().isGenerating() && stage_->controller.isShown());
    QVERIFY(timer.elapsed() < 100);
    stage_->http.answer(200, imageAnswer(pngPicture({9, 9})));
    QTest::qWait(50);
    QCOMPARE(stage_->model().shown()->image.size, QSize(48, 32));
    QCOMPARE(stage_->history.entries().size(), 1U);
    QVERIFY(stage_->key(keycode::kEscape));
    QVERIFY(!stage_->isPanelUp);
  }

  void aNewStartEndsTheOneBefore() {
    stage_->generate(u"first"_s);
    const auto first = stage_->http.waiting.front();
    stage_->http.waiting.clear();
    stage_->generate(u"second"_s);
    first(HttpResponse{200, {}, imageAnswer(pngPicture({9, 9}))});
    QTest::qWait(50);
    QVERIFY(stage_->model().isGenerating() && stage_->history.entries().empty());
    stage_->answer(pngPicture());
    QCOMPARE(stage_->model().shown()->request.prompt, u"second"_s);
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
    QTRY_COMPARE(stage_->model().notice(), u"That is not an image that can be read."_s);
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

  void theResultIsCopiedUnlessTextIsSelected() {
    QVERIFY(!stage_->press(u'c'));
    stage_->make(u"a fox"_s);
    QVERIFY(!stage_->press(u'c', false, true));
    QVERIFY(stage_->pasteboard.images.empty());
    QVERIFY(stage_->press(u'c'));
    QCOMPARE(stage_->pasteboard.images, std::vector{pngPicture()});
    QCOMPARE(stage_->model().notice(), u"Image copied to clipboard"_s);
  }

  void theResultIsSaved() {
    stage_->make(u"A red fox, in the snow"_s);
    QVERIFY(stage_->press(u's', true));
    QVERIFY(!stage_->isPanelUp);
    QCOMPARE(stage_->suggestedName, u"a-red-fox-in-the-snow.png"_s);
    const QString path = stage_->directory.filePath(u"fox.png"_s);
    stage_->chosenDestination(path);
    QTRY_COMPARE(stage_->model().notice(), u"Saved as fox.png"_s);
    QCOMPARE(readFile(path), pngPicture());
    stage_->press(u's', true);
    stage_->chosenDestination(stage_->directory.filePath(u"nowhere/fox.png"_s));
    QTRY_VERIFY(stage_->model().error().startsWith(u"Not saved: "_s));
    stage_->press(u's', true);
    stage_->chosenDestination({});
    QVERIFY(stage_->isPanelUp);
  }

  void theResultIsMadeAnewOrChanged() {
    stage_->make(u"a fox"_s);
    stage_->model().setPrompt(u"something else"_s);
    QVERIFY(stage_->press(u'r'));
    QVERIFY(stage_->isSent());
    QCOMPARE(stage_->lastForm().at("prompt"), "a fox");
    stage_->answer(pngPicture({20, 20}));
    QCOMPARE(stage_->history.entries().size(), 2U);
    stage_->model().setPrompt(u"a fox"_s);
    QVERIFY(stage_->press(u'e'));
    QTRY_VERIFY(stage_->model().isEdit());
    QCOMPARE(stage_->model().prompt(), QString());
    QCOMPARE(stage_->model().references()[0].png, pngPicture({20, 20}));
    QVERIFY(stage_->press(u'n'));
    QVERIFY(!stage_->model().shown() && stage_->model().references().empty());
  }

  void theHistoryIsWalkedWithTheArrows() {
    stage_->make(u"first"_s, pngPicture({10, 10}));
    stage_->make(u"second"_s, pngPicture({20, 20}));
    QVERIFY(!stage_->key(keycode::kLeft));
    QVERIFY(stage_->key(keycode::kTab));
    QCOMPARE(stage_->model().area(), Area::history);
    QVERIFY(stage_->key(keycode::kRight));
    QTRY_COMPARE(stage_->model().shown()->image.size, QSize(10, 10));
    QVERIFY(stage_->key(keycode::kRight));
    QCOMPARE(stage_->controller.historyList().rowOf(stage_->model().selectedID()), 1);
    QVERIFY(stage_->key(keycode::kReturn));
    QCOMPARE(stage_->model().prompt(), u"first"_s);
    QCOMPARE(stage_->model().area(), Area::prompt);
    stage_->key(keycode::kTab);
    QVERIFY(!stage_->controller.handleKey({.keyCode = 0, .characters = u"x"_s}));
    QCOMPARE(stage_->model().area(), Area::prompt);
  }

  void theHistoryIsLookedThroughWhileAnImageIsMade() {
    stage_->make(u"first"_s);
    stage_->generate(u"second"_s);
    stage_->key(keycode::kTab);
    QVERIFY(!stage_->model().showsProgress());
    stage_->key(keycode::kEscape);
    QVERIFY(stage_->model().isGenerating() && stage_->model().showsProgress());
    stage_->key(keycode::kTab);
    stage_->answer(pngPicture({10, 10}));
    QCOMPARE(stage_->model().shown()->request.prompt, u"second"_s);
    QCOMPARE(stage_->model().area(), Area::prompt);
  }

  void deletingIsAskedTwice() {
    stage_->make(u"first"_s, pngPicture({10, 10}));
    stage_->make(u"second"_s);
    stage_->key(keycode::kTab);
    stage_->key(keycode::kDelete);
    QVERIFY(stage_->model().isDeletionAsked());
    stage_->key(keycode::kEscape);
    QVERIFY(!stage_->model().isDeletionAsked());
    QCOMPARE(stage_->history.entries().size(), 2U);
    stage_->key(keycode::kDelete);
    stage_->key(keycode::kDelete);
    QCOMPARE(stage_->history.entries().size(), 1U);
    QTRY_COMPARE(stage_->model().shown()->request.prompt, u"first"_s);
    stage_->key(keycode::kDelete);
    stage_->key(keycode::kDelete);
    QVERIFY(stage_->history.entries().empty() && !stage_->model().shown());
    QCOMPARE(stage_->model().area(), Area::prompt);
  }

  void referencesOfEarlierDaysAreMissed() {
    stage_->model().attach(pngPicture(), {});
    stage_->make(u"with one"_s, pngPicture({10, 10}));
    stage_->make(u"other"_s);
    stage_->key(keycode::kTab);
    stage_->key(keycode::kRight);
    QTRY_COMPARE(stage_->model().shown()->request.prompt, u"with one"_s);
    stage_->press(u'r');
    QVERIFY(!stage_->model().isGenerating());
    QCOMPARE(stage_->model().prompt(), u"with one"_s);
    QVERIFY(stage_->model().notice().contains(u"attach them anew"_s));
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

  void namesOfFilesComeFromThePrompt() {
    QCOMPARE(suggestedFileName(u" ../etc/passwd: 日本 Größe!"_s), u"etc-passwd-日本-größe.png"_s);
    QCOMPARE(suggestedFileName(u"?!"_s), u"image.png"_s);
    const QString longest = suggestedFileName(u"word "_s.repeated(100));
    QVERIFY(longest.size() < 60 && longest.endsWith(u"word.png"_s));
  }

  void settingsOfAnotherHandAreBounded() {
    const QString path = stage_->folders.file(u"GenerateImage/settings.json"_s);
    const QByteArray json =
        QByteArray("{'historyMegabytes': -3, 'size': 'huge', 'quality': 'high'}").replace('\'', '"');
    QVERIFY(writeFile(path, json));
    const GenerateImageStore store(path);
    QCOMPARE(store.value().historyMegabytes, 1);
    QVERIFY(store.value().options == (ImageOptions{ImageSize::automatic, ImageQuality::high}));
  }

 private:
  std::unique_ptr<Stage> stage_;
};

QTEST_GUILESS_MAIN(TestGenerateImagePanel)
#include "test_generate_image_panel.moc"
