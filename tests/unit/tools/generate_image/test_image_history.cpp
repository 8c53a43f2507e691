#include <QJsonDocument>
#include <QSignalSpy>
#include <QTest>

#include <sys/stat.h>

#include "support/files.h"
#include "support/full_disk.h"
#include "support/generate_image_world.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kDay = 24 * 3600;

HistoryEntry entry(const QString& prompt, int second) {
  const QDateTime time = QDateTime::fromSecsSinceEpoch(1'800'000'000 + second, Qt::UTC);
  return {makeHistoryID(time), prompt, {ImageSize::square, ImageQuality::low}, true, 2, time, 0};
}

GeneratedImage image(const QColor& color = Qt::red) { return *asGeneratedImage(pngPicture({64, 48}, color)); }

QStringList prompts(const ImageHistory& history) {
  QStringList prompts;
  for (const HistoryEntry& one : history.entries()) prompts.append(one.prompt);
  return prompts;
}

void load(ImageHistory& history) {
  history.load();
  QTRY_VERIFY(history.isLoaded());
}

bool makeOld(const QString& path) {
  QFile file(path);
  return file.open(QFile::ReadWrite) &&
         file.setFileTime(QDateTime::currentDateTimeUtc().addSecs(-kDay), QFile::FileModificationTime);
}

}  // namespace

class TestImageHistory : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() { world_ = std::make_unique<GenerateImageWorld>(); }
  void cleanup() { world_.reset(); }

  void whatWasMadeIsFoundAgainTheNewestFirst() {
    const HistoryEntry first = entry(u"first"_s, 1);
    const std::vector<QByteArray> references{pngPicture({8, 8}), pngPicture({9, 9})};
    world_->history.add(first, image(Qt::green), references);
    world_->history.add(entry(u"second"_s, 2), image());
    QCOMPARE(prompts(world_->history), QStringList({u"second"_s, u"first"_s}));
    world_->history.close();
    QCOMPARE(world_->historyFiles().size(), 6);

    ImageHistory again(world_->historyFolder());
    load(again);
    QCOMPARE(prompts(again), QStringList({u"second"_s, u"first"_s}));
    HistoryEntry expected = first;
    expected.bytes = HistoryFolder::bytesOf(first, image(Qt::green).png, references);
    QCOMPARE(again.entries().back(), expected);
    QCOMPARE(again.totalBytes(), world_->history.totalBytes());
    std::optional<KeptImage> opened;
    const Job job = Job::start();
    again.open(first, job, [&](const auto& found) { opened = found; });
    QTRY_VERIFY(opened);
    QCOMPARE(opened->image.png, image(Qt::green).png);
    QVERIFY(opened->request == (ImageRequest{first.prompt, first.options, true, references}));
    QVERIFY(!opened->lacksReferences);
    QVERIFY(again.thumbnail(first.id).isNull());
    QTRY_COMPARE(again.thumbnail(first.id).size(), QSize(128, 128));
    QCOMPARE(again.thumbnail(first.id).pixelColor(64, 64), QColor(Qt::green));
    const auto mode = QFile::permissions(again.path(first.id));
    QVERIFY(!(mode & (QFile::ReadGroup | QFile::ReadOther)));
  }

  void theOldestGoWhenTheRoomIsUsedUp() {
    for (int second = 0; second < 5; ++second) world_->history.add(entry(QString::number(second), second), image());
    const qint64 one = world_->history.entries().front().bytes;
    world_->history.setLimit(2 * one);
    QCOMPARE(prompts(world_->history), QStringList({u"4"_s, u"3"_s}));
    world_->history.add(entry(u"5"_s, 5), image());
    QCOMPARE(prompts(world_->history), QStringList({u"5"_s, u"4"_s}));
    world_->history.setLimit(1);
    QCOMPARE(prompts(world_->history), QStringList(u"5"_s));
    world_->history.close();
    QCOMPARE(world_->historyFiles().size(), 2);
  }

  void theLimitHoldsForWhatIsFoundToo() {
    for (int second = 0; second < 3; ++second) world_->history.add(entry(QString::number(second), second), image());
    world_->history.close();
    ImageHistory again(world_->historyFolder());
    again.setLimit(1);
    load(again);
    QCOMPARE(prompts(again), QStringList(u"2"_s));
    again.close();
    QCOMPARE(world_->historyFiles().size(), 2);
  }

  /// One of an edit is the picture that is changed: what is left must not take its place.
  void withoutOneOfItsReferencesAnImageHasNone() {
    const HistoryEntry one = entry(u"one"_s, 1);
    world_->history.add(one, image(), {pngPicture({8, 8}), pngPicture({9, 9})});
    world_->history.close();
    const HistoryFolder folder(world_->historyFolder());
    QVERIFY(writeFile(world_->historyFolder() + u'/' + one.id + u"-1.png"_s, "GIF89a"));
    const auto kept = folder.read(one);
    QVERIFY(kept && kept->lacksReferences && kept->request.references.empty());
    folder.remove({one.id});
    QCOMPARE(world_->historyFiles(), QStringList());
  }

  void whatOtherProgramsKeepIsFoundAtTheNextLook() {
    ImageHistory other(world_->historyFolder());
    load(other);
    for (int second = 0; second < 20; ++second) {
      world_->history.add(entry(u"ours"_s, 2 * second), image());
      other.add(entry(u"theirs"_s, 2 * second + 1), image());
    }
    other.close();
    QSignalSpy changed(&world_->history, &ImageHistory::changed);
    world_->history.load();
    QTRY_COMPARE(world_->history.entries().size(), 40U);
    QVERIFY(!changed.empty());
    QCOMPARE(prompts(world_->history).first(2), QStringList({u"theirs"_s, u"ours"_s}));
    changed.clear();
    world_->history.load();
    HistoryFolder(world_->historyFolder()).remove({world_->history.entries()[0].id});
    world_->history.load();
    QTRY_COMPARE(world_->history.entries().size(), 39U);
    QVERIFY(!changed.empty());
  }

  /// Also while the folder is being read, and what another program has kept meanwhile.
  void deletingAllLeavesNothing() {
    const HistoryFolder folder(world_->historyFolder());
    for (int second = 0; second < 3; ++second) world_->history.add(entry(u"ours"_s, second), image());
    load(world_->history);
    QVERIFY(folder.write(entry(u"theirs"_s, 7), pngPicture(), {pngPicture(), pngPicture()}));
    QVERIFY(writeFile(world_->historyFolder() + u'/' + entry({}, 8).id + u".png.AbC123"_s, "half"));
    world_->history.load();
    world_->history.removeAll();
    world_->history.add(entry(u"new"_s, 9), image());
    world_->history.close();
    for (int turn = 0; turn < 5; ++turn) QCoreApplication::processEvents();
    QCOMPARE(world_->historyFiles().size(), 2);
    QCOMPARE(prompts(world_->history), QStringList(u"new"_s));
  }

  void aFullDiskLosesNothingThatIsKept() {
    const GeneratedImage large{QByteArray("\x89PNG\r\n\x1a\n") + QByteArray(100'000, 'x'), image().picture, {64, 48}};
    world_->history.add(entry(u"kept"_s, 1), image());
    QTRY_COMPARE(world_->historyFiles().size(), 2);
    QSignalSpy failed(&world_->history, &ImageHistory::failed);
    {
      const SmallestFiles disk(20'000);
      world_->history.add(entry(u"too large"_s, 2), large);
      QTRY_COMPARE(failed.size(), 1);
      world_->history.add(entry(u"its reference is"_s, 3), image(), {pngPicture(), large.png});
      QTRY_COMPARE(failed.size(), 2);
    }
    QVERIFY(!failed[0][0].toString().isEmpty());
    QCOMPARE(prompts(world_->history), QStringList(u"kept"_s));
    QCOMPARE(world_->historyFiles().size(), 2);
    load(world_->history);
    QCOMPARE(prompts(world_->history), QStringList(u"kept"_s));
  }

  void theLongestPromptIsFoundAgain() {
    const HistoryEntry longest =
        entryOf({QString(1'000'000, QChar(1)), {}, false, {}}, QDateTime::currentDateTimeUtc());
    world_->history.add(longest, image());
    world_->history.close();
    ImageHistory again(world_->historyFolder());
    load(again);
    QCOMPARE(again.entries().size(), 1U);
    QVERIFY(again.entries()[0].prompt == longest.prompt);
  }

  void deletedIsDeleted() {
    for (int second = 0; second < 3; ++second) world_->history.add(entry(QString::number(second), second), image());
    world_->history.remove(world_->history.entries()[1].id);
    QCOMPARE(prompts(world_->history), QStringList({u"2"_s, u"0"_s}));
    world_->history.removeAll();
    QVERIFY(world_->history.entries().empty());
    world_->history.close();
    QCOMPARE(world_->historyFiles(), QStringList());
    world_->history.add(entry(u"late"_s, 9), image());
    world_->history.close();
    QCOMPARE(world_->historyFiles(), QStringList());
  }

  void damagedAndForeignFilesArePassedOver() {
    const HistoryEntry good = entry(u"good"_s, 1);
    world_->history.add(good, image());
    world_->history.close();
    const QDir folder(world_->historyFolder());
    const QByteArray record = QJsonDocument(encode(good)).toJson();
    const auto put = [&](const QString& id, const QByteArray& json, const QByteArray& png) {
      return writeFile(folder.filePath(id + u".json"_s), json) && writeFile(folder.filePath(id + u".png"_s), png);
    };
    const auto id = [](int second) { return entry({}, second).id; };
    QVERIFY(put(id(2), "{", pngPicture()));
    QVERIFY(put(id(3), "{\"prompt\": 7}", pngPicture()));
    QVERIFY(put(id(4), record, "GIF89a"));
    QVERIFY(put(id(5), record + QByteArray(1'100'000, ' '), pngPicture()));
    QVERIFY(put(u"notes"_s, record, pngPicture()));
    QVERIFY(put(u"20261332-999999999-zzzz"_s, record, pngPicture()));
    const QString linked = id(6);
    QVERIFY(writeFile(folder.filePath(linked + u".json"_s), record));
    QVERIFY(QFile::link(u"/etc/passwd"_s, folder.filePath(linked + u".png"_s)));
    QVERIFY(folder.mkdir(id(7) + u".json"_s));
    QCOMPARE(mkfifo(QFile::encodeName(folder.filePath(id(8) + u".json"_s)).constData(), 0600), 0);
    QVERIFY(writeFile(folder.filePath(id(9) + u".json"_s), record));
    ImageHistory again(world_->historyFolder());
    load(again);
    QCOMPARE(prompts(again), QStringList(u"good"_s));
    again.removeAll();
    again.close();
    QVERIFY(QFile::exists(folder.filePath(u"notes.png"_s)));
    QVERIFY(QFile::exists(u"/etc/passwd"_s));
  }

  void aPictureThatIsDamagedInTheMiddleIsListedAndCannotBeOpened() {
    const HistoryEntry one = entry(u"one"_s, 1);
    world_->history.add(one, image());
    world_->history.close();
    QVERIFY(writeFile(world_->history.path(one.id), pngPicture({200, 200}).first(60)));
    ImageHistory again(world_->historyFolder());
    load(again);
    QSignalSpy ready(&again, &ImageHistory::thumbnailReady);
    again.thumbnail(one.id);
    QTRY_COMPARE(ready.size(), 1);
    QVERIFY(again.thumbnail(one.id).isNull());
    bool answered = false;
    const Job job = Job::start();
    again.open(one, job, [&](const auto& found) { answered = !found; });
    QTRY_VERIFY(answered);
  }

  /// The record comes last: without one, the image was being written when the program died.
  void whatAKilledProgramLeavesIsSwept() {
    const QString folder = world_->historyFolder() + u'/';
    const QString dead = folder + entry({}, 1).id;
    const QStringList old{dead + u".png"_s, dead + u"-1.png"_s, dead + u".json.Xy12Zw"_s,
                          folder + entry({}, 3).id + u".json"_s};
    const QStringList stay{folder + entry({}, 2).id + u".png"_s, folder + u"holiday.png"_s};
    for (const QString& path : old + stay) QVERIFY(writeFile(path, pngPicture()));
    const HistoryEntry whole = entry(u"whole"_s, 4);
    QVERIFY(HistoryFolder(world_->historyFolder()).write(whole, pngPicture(), {pngPicture(), pngPicture()}));
    for (const QString& path : old) QVERIFY(makeOld(path));
    for (const QFileInfo& info : QDir(folder).entryInfoList({whole.id + u"*"_s, u"holiday.png"_s}))
      QVERIFY(makeOld(info.filePath()));
    load(world_->history);
    QCOMPARE(world_->historyFiles().size(), stay.size() + 4);
    for (const QString& path : stay) QVERIFY(QFile::exists(path));
  }

  void whatCannotBeKeptIsTold() {
    QVERIFY(writeFile(world_->historyFolder(), "a file in the folder's place"));
    QSignalSpy failed(&world_->history, &ImageHistory::failed);
    world_->history.add(entry(u"one"_s, 1), image());
    QTRY_COMPARE(failed.size(), 1);
    QVERIFY(world_->history.entries().empty());
  }

 private:
  std::unique_ptr<GenerateImageWorld> world_;
};

QTEST_GUILESS_MAIN(TestImageHistory)
#include "test_image_history.moc"
