#include <QJsonDocument>
#include <QSignalSpy>
#include <QTest>

#include <sys/stat.h>

#include "support/files.h"
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
    world_->history.add(first, image(Qt::green));
    world_->history.add(entry(u"second"_s, 2), image());
    QCOMPARE(prompts(world_->history), QStringList({u"second"_s, u"first"_s}));
    world_->history.close();
    QCOMPARE(world_->historyFiles().size(), 4);

    ImageHistory again(world_->historyFolder());
    load(again);
    QCOMPARE(prompts(again), QStringList({u"second"_s, u"first"_s}));
    HistoryEntry expected = first;
    expected.bytes = again.entries().back().bytes;
    QCOMPARE(again.entries().back(), expected);
    QCOMPARE(again.totalBytes(), world_->history.totalBytes());
    std::optional<GeneratedImage> opened;
    const Job job = Job::start();
    again.open(first.id, job, [&](const auto& found) { opened = found; });
    QTRY_VERIFY(opened);
    QCOMPARE(opened->png, image(Qt::green).png);
    QVERIFY(again.thumbnail(first.id).isNull());
    QTRY_COMPARE(again.thumbnail(first.id).size(), QSize(128, 128));
    QCOMPARE(again.thumbnail(first.id).pixelColor(64, 64), QColor(Qt::green));
    const auto mode = QFile::permissions(again.path(first.id));
    QVERIFY(!(mode & (QFile::ReadGroup | QFile::ReadOther)));
  }

  void theOldestGoWhenTheRoomIsUsedUp() {
    for (int second = 0; second < 5; ++second) world_->history.add(entry(QString::number(second), second), image());
    const qint64 one = world_->history.entries().front().bytes;
    world_->history.setLimit(2 * one + 1);
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
    QVERIFY(put(id(5), record + QByteArray(300'000, ' '), pngPicture()));
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
    again.open(one.id, job, [&](const auto& found) { answered = !found; });
    QTRY_VERIFY(answered);
  }

  /// The record comes last: without one, the image was being written when the program died.
  void whatAKilledProgramLeavesIsSwept() {
    const QString old = world_->historyFolder() + u'/' + entry({}, 1).id + u".png"_s;
    const QString fresh = world_->historyFolder() + u'/' + entry({}, 2).id + u".png"_s;
    const QString foreign = world_->historyFolder() + u"/holiday.png"_s;
    for (const QString& path : {old, fresh, foreign}) QVERIFY(writeFile(path, pngPicture()));
    QVERIFY(makeOld(old) && makeOld(foreign));
    load(world_->history);
    QVERIFY(!QFile::exists(old));
    QVERIFY(QFile::exists(fresh) && QFile::exists(foreign));
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
