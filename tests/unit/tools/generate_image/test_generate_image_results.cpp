#include "support/files.h"
#include "support/generate_image_stage.h"

using namespace Qt::StringLiterals;

using Area = GenerateImageModel::Area;
using Stage = GenerateImageStage;

class TestGenerateImageResults : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() { stage_ = std::make_unique<Stage>(); }
  void cleanup() { stage_.reset(); }

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
    stage_->make(u"another"_s);
    stage_->press(u's', true);
    stage_->chosenDestination({});
    stage_->settle();
    QVERIFY(stage_->isPanelUp && stage_->model().error().isEmpty());
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

  void aPromptThatLooksLikeAPageIsShownAsItStands() {
    stage_->make(u"<img src='file:///etc/hostname'> & co"_s);
    const QModelIndex index = stage_->controller.historyList().index(0);
    QVERIFY(index.data(Qt::DisplayRole).toString().startsWith(u"<img src="_s));
    QVERIFY(index.data(Qt::ToolTipRole).toString().startsWith(u"<p>&lt;img src="_s));
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

  /// The images that went with it come back from the disk, in their order.
  void anImageOfTheHistoryIsMadeAnewWithItsReferences() {
    makeAndReopenAnEdit();
    stage_->press(u'r');
    QVERIFY(stage_->isSent());
    const auto form = stage_->lastForm();
    QCOMPARE(form.at("prompt"), "without the fox");
    QCOMPARE(form.at("edit"), "true");
    QCOMPARE(form.at("image-1.png"), pngPicture({12, 12}));
    QCOMPARE(form.at("image-2.png"), pngPicture({3, 3}));
    stage_->answer(pngPicture({11, 11}));
    QCOMPARE(stage_->history.entries()[0].references, 2);
  }

  void aPromptOfTheHistoryComesWithItsReferences() {
    makeAndReopenAnEdit();
    stage_->model().attach(pngPicture({5, 5}), {});
    stage_->key(keycode::kReturn);
    QTRY_COMPARE(stage_->model().references().size(), 2U);
    QVERIFY(stage_->model().isEdit());
    QCOMPARE(stage_->model().references()[0].png, pngPicture({12, 12}));
    stage_->make(u"other"_s);
    stage_->model().removeReferences();
    stage_->model().attach(pngPicture({5, 5}), {});
    stage_->make(u"of one"_s);
    QCOMPARE(stage_->history.entries()[0].references, 1);
    // A picture that needed none leaves the user's where they are.
    stage_->model().removeReferences();
    stage_->make(u"of none"_s);
    stage_->model().attach(pngPicture({6, 6}), {});
    stage_->controller.openHistory(0);
    stage_->key(keycode::kReturn);
    QCOMPARE(stage_->model().references().size(), 1U);
  }

  void referencesThatAreGoneAreMissed() {
    makeAndReopenAnEdit();
    const QString id = stage_->history.entries()[1].id;
    QVERIFY(QFile::remove(stage_->historyFolder() + u'/' + id + u"-2.png"_s));
    stage_->key(keycode::kLeft);
    QTRY_COMPARE(stage_->model().shown()->request.prompt, u"other"_s);
    stage_->key(keycode::kRight);
    QTRY_COMPARE(stage_->model().shown()->request.prompt, u"without the fox"_s);
    stage_->press(u'r');
    QVERIFY(!stage_->model().isGenerating());
    QCOMPARE(stage_->model().prompt(), u"without the fox"_s);
    QVERIFY(stage_->model().notice().contains(u"attach them anew"_s));
  }

  void anImageThatCannotBeReadStandsForNoOther() {
    stage_->make(u"first"_s);
    stage_->make(u"second"_s);
    QVERIFY(writeFile(stage_->history.path(stage_->history.entries()[1].id), pngPicture({300, 300}).first(60)));
    stage_->key(keycode::kTab);
    stage_->key(keycode::kRight);
    QTRY_COMPARE(stage_->model().error(), u"This image cannot be read any more."_s);
    QVERIFY(!stage_->model().shown() && !stage_->press(u'c'));
    stage_->key(keycode::kDelete);
    stage_->key(keycode::kDelete);
    QCOMPARE(stage_->history.entries()[0].prompt, u"second"_s);
  }

  void whatIsDoneWhileAnOldImageIsOpenedComesBeforeIt() {
    stage_->make(u"first"_s, pngPicture({3000, 3000}));
    stage_->make(u"second"_s);
    stage_->generate(u"third"_s);
    stage_->http.answer(200, imageAnswer(pngPicture({30, 30})));
    stage_->controller.openHistory(1);
    QTRY_VERIFY(!stage_->model().isGenerating());
    stage_->history.close();
    stage_->settle();
    QCOMPARE(stage_->model().selectedID(), stage_->model().shown()->historyID);
    QCOMPARE(stage_->model().shown()->request.prompt, u"third"_s);
  }

  void whatIsSavedIsWhatWasShownThen() {
    stage_->make(u"first"_s, pngPicture({10, 10}));
    stage_->press(u's', true);
    stage_->controller.show();
    stage_->press(u'n');
    const QString path = stage_->directory.filePath(u"first.png"_s);
    stage_->chosenDestination(path);
    QTRY_COMPARE(stage_->model().notice(), u"Saved as first.png"_s);
    QCOMPARE(readFile(path), pngPicture({10, 10}));
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
  /// "without the fox", made from two images, is shown and selected in the history, behind "other".
  void makeAndReopenAnEdit() {
    stage_->model().edit(pngPicture({12, 12}), {});
    stage_->model().attach(pngPicture({3, 3}), {});
    stage_->make(u"without the fox"_s, pngPicture({10, 10}));
    stage_->model().removeReferences();
    stage_->make(u"other"_s);
    stage_->key(keycode::kTab);
    stage_->key(keycode::kRight);
    QTRY_COMPARE(stage_->model().shown()->request.prompt, u"without the fox"_s);
  }

  std::unique_ptr<Stage> stage_;
};

QTEST_GUILESS_MAIN(TestGenerateImageResults)
#include "test_generate_image_results.moc"
