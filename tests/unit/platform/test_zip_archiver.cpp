#include <QDir>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

#include "platform/archiver.h"
#include "support/files.h"
#include "support/full_disk.h"

using namespace Qt::StringLiterals;

namespace {

QByteArray noise(qsizetype size) {
  QByteArray bytes(size, Qt::Uninitialized);
  QRandomGenerator random(7);
  random.generate(bytes.begin(), bytes.end());
  return bytes;
}

QByteArray text(qsizetype size) {
  QByteArray bytes;
  QRandomGenerator random(11);
  while (bytes.size() < size) bytes += "line " + QByteArray::number(random.bounded(5000)) + " of the log\n";
  return bytes.left(size);
}

/// The exit status of a program that was found, its output in the log when it is not zero.
int run(const QString& program, const QStringList& arguments) {
  QProcess process;
  process.setProcessChannelMode(QProcess::MergedChannels);
  process.start(program, arguments);
  if (!process.waitForFinished(60'000)) return -1;
  if (process.exitCode() != 0) qWarning().noquote() << program << process.readAll();
  return process.exitCode();
}

}  // namespace

class TestZipArchiver : public QObject {
  Q_OBJECT

 private:
  std::expected<void, ArchiveError> pack(const std::vector<ArchiveItem>& items, const std::stop_token& stop = {}) {
    progress_ = std::make_unique<ArchiveProgress>();
    return archiver_->pack(items, target_, *progress_, stop);
  }

  QTemporaryDir folder_;
  QString target_ = folder_.filePath(u"made.zip"_s);
  std::unique_ptr<Archiver> archiver_ = makeArchiver();
  std::unique_ptr<ArchiveProgress> progress_;

 private Q_SLOTS:
  void cleanup() { QFile::remove(target_); }

  void whatIsPackedComesOutAgain() {
    const QDir tree(folder_.filePath(u"tree"_s));
    QVERIFY(tree.mkpath(u"größe \u65e5\u672c/empty"_s) && tree.mkpath(u".hidden"_s));
    constexpr qsizetype kBlock = 256 * 1024;
    writeFile(tree.filePath(u"nothing"_s), {});
    writeFile(tree.filePath(u"log"_s), text(3 * kBlock + 12'345));
    writeFile(tree.filePath(u"whole blocks"_s), text(2 * kBlock));
    writeFile(tree.filePath(u"größe \u65e5\u672c/noise"_s), noise(kBlock + 1));
    writeFile(tree.filePath(u".hidden/it's \"quoted\""_s), "x");
    QFile(tree.filePath(u"log"_s)).setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    QVERIFY(QFile::link(u"log"_s, tree.filePath(u"link"_s)) && QFile::link(u"gone"_s, tree.filePath(u"dangling"_s)));
    QVERIFY(QFile::link(tree.filePath(u"log"_s), folder_.filePath(u"dropped link"_s)));
    QCOMPARE(mkfifo(QFile::encodeName(tree.filePath(u"pipe"_s)).constData(), 0600), 0);

    const auto packed = pack({{tree.path(), u"tree"_s}, {folder_.filePath(u"dropped link"_s), u"notes-2.txt"_s}});
    QVERIFY2(packed, qPrintable(packed ? QString() : packed.error().description()));
    QCOMPARE(progress_->bytes.load(), progress_->totalBytes.load());
    QCOMPARE(run(u"unzip"_s, {u"-tqq"_s, target_}), 0);

    const QString out = folder_.filePath(u"out"_s);
    QVERIFY(QDir().mkpath(out));
    QCOMPARE(run(u"bsdtar"_s, {u"-xf"_s, target_, u"-C"_s, out}), 0);
    QVERIFY(QFile::remove(tree.filePath(u"pipe"_s)));
    QCOMPARE(run(u"diff"_s, {u"-r"_s, u"--no-dereference"_s, tree.path(), out + u"/tree"_s}), 0);
    QVERIFY(QFileInfo(out + u"/tree/größe \u65e5\u672c/empty"_s).isDir());
    QCOMPARE(QFileInfo(out + u"/tree/link"_s).symLinkTarget(), out + u"/tree/log"_s);
    const QFileInfo log(out + u"/tree/log"_s);
    QCOMPARE(log.permissions() & QFile::ExeOwner, QFile::ExeOwner);
    QCOMPARE(log.lastModified().toSecsSinceEpoch(),
             QFileInfo(tree.filePath(u"log"_s)).lastModified().toSecsSinceEpoch());
    QCOMPARE(readFile(out + u"/notes-2.txt"_s), text(3 * kBlock + 12'345));
    QVERIFY(QFileInfo(target_).size() < QFileInfo(log).size() + kBlock * 3 / 2);
  }

  void aFailureOrAStopLeavesNothingBehind() {
    writeFile(folder_.filePath(u"big"_s), noise(8'000'000));
    const auto gone = pack({{folder_.filePath(u"big"_s), u"big"_s}, {folder_.filePath(u"none"_s), u"none"_s}});
    QVERIFY(!gone && !gone.error().wasCancelled);
    QVERIFY2(gone.error().message.contains(u"none: "_s), qPrintable(gone.error().message));
    QVERIFY(!QFile::exists(target_));

    {
      const SmallestFiles disk;
      const auto full = pack({{folder_.filePath(u"big"_s), u"big"_s}});
      QVERIFY(!full && !full.error().wasCancelled);
    }
    QVERIFY(!QFile::exists(target_));

    std::stop_source stop;
    stop.request_stop();
    const auto stopped = pack({{folder_.filePath(u"big"_s), u"big"_s}}, stop.get_token());
    QVERIFY(!stopped && stopped.error().wasCancelled);
    QVERIFY(!QFile::exists(target_));
  }

  void manySmallFilesNeedTheLargeDirectory() {
    writeFile(folder_.filePath(u"small"_s), "x");
    std::vector<ArchiveItem> items;
    for (int i = 0; i < 70'000; ++i) items.push_back({folder_.filePath(u"small"_s), QString::number(i)});
    QVERIFY(pack(items));
    QCOMPARE(run(u"unzip"_s, {u"-tqq"_s, target_}), 0);
    QCOMPARE(run(u"bsdtar"_s, {u"-tf"_s, target_}), 0);
  }
};

QTEST_GUILESS_MAIN(TestZipArchiver)
#include "test_zip_archiver.moc"
