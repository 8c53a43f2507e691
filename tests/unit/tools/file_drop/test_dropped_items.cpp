#include <QAbstractItemModelTester>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "base/byte_count.h"
#include "support/files.h"
#include "tools/file_drop/archive_folder.h"
#include "tools/file_drop/bulk_upload_model.h"

using namespace Qt::StringLiterals;

namespace {

struct Tree {
  QString file(const QString& name, const QByteArray& bytes = "12345") {
    if (!writeFile(path(name), bytes)) qFatal("cannot write");
    return path(name);
  }
  QString path(const QString& name) const { return folder.filePath(name); }
  void link(const QString& target, const QString& name) const {
    std::filesystem::create_symlink(target.toStdString(), path(name).toStdString());
  }

  QTemporaryDir folder;
};

QList<QUrl> urls(std::initializer_list<const char*> paths) {
  QList<QUrl> all;
  for (const char* path : paths) all.append(QUrl::fromLocalFile(QString::fromUtf8(path)));
  return all;
}

QStringList names(const std::vector<ArchiveItem>& items) {
  QStringList all;
  for (const ArchiveItem& item : items) all.append(item.name);
  return all;
}

}  // namespace

class TestDroppedItems : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void aFolderCountsItsFilesAndFollowsNoLink() {
    Tree tree;
    tree.file(u"top/a"_s);
    tree.file(u"top/deep/er/b"_s);
    tree.file(u"elsewhere"_s, QByteArray(1000, 'x'));
    tree.link(u".."_s, u"top/loop"_s);
    tree.link(tree.path(u"elsewhere"_s), u"top/link"_s);
    QCOMPARE(::mkfifo(QFile::encodeName(tree.path(u"top/pipe"_s)).constData(), 0600), 0);
    const DroppedItem item = measured(tree.path(u"top"_s), {});
    QVERIFY(item.isFolder && item.fault.isEmpty());
    QCOMPARE(item.bytes, 10);
    QCOMPARE(item.files, 2);
    // What the user gives is followed: it stands for what it leads to.
    tree.link(tree.path(u"top"_s), u"given"_s);
    QCOMPARE(measured(tree.path(u"given"_s), {}).bytes, 10);
  }

  void aLargeFileIsOnlyLookedAt() {
    Tree tree;
    QFile file(tree.path(u"disk.img"_s));
    QVERIFY(file.open(QFile::WriteOnly) && file.resize(10'000'000'000));
    QCOMPARE(measured(file.fileName(), {}).bytes, 10'000'000'000);
  }

  void whatIsNoFileOrFolderHasAFault() {
    Tree tree;
    const QString pipe = tree.path(u"pipe"_s);
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    QCOMPARE(measured(pipe, {}).fault, u"Only files and folders can be uploaded."_s);
    QCOMPARE(measured(tree.path(u"gone"_s), {}).fault, u"There is no such file or folder."_s);
    const QString closed = tree.file(u"closed"_s);
    QFile::setPermissions(closed, {});
    if (::geteuid() != 0) QCOMPARE(measured(closed, {}).fault, u"You have no permission to read it."_s);
  }

  void measuringStopsWhenAsked() {
    Tree tree;
    tree.file(u"top/a"_s);
    std::stop_source source;
    source.request_stop();
    QCOMPARE(measured(tree.path(u"top"_s), source.get_token()).files, 0);
  }

  void sizesAreDecimalAndShort() {
    const std::initializer_list<std::pair<qint64, QString>> cases = {
        {0, u"Zero KB"_s},
        {1, u"1 byte"_s},
        {999, u"999 bytes"_s},
        {1000, u"1 KB"_s},
        {58'499, u"58 KB"_s},
        {999'500, u"1 MB"_s},
        {12'340'000, u"12.3 MB"_s},
        {256'000'001, u"256 MB"_s},
        {300'260'000, u"300.3 MB"_s},
        {10'004'000'000, u"10 GB"_s},
        {1'234'000'000, u"1.23 GB"_s},
    };
    for (const auto& [bytes, text] : cases) QCOMPARE(byteCountText(bytes), text);
  }

  void eachIsListedOnceInItsOrder() {
    BulkUploadModel model;
    const QAbstractItemModelTester tester(&model);
    QCOMPARE(model.add(urls({"/b", "/a/", "/b"})), QStringList({u"/b"_s, u"/a"_s}));
    QCOMPARE(model.add(urls({"/a", "/c"})), QStringList(u"/c"_s));
    QVERIFY(model.add({QUrl(u"https://example.com/x"_s), QUrl(u"sftp://host/x"_s), QUrl()}).isEmpty());
    QCOMPARE(model.files(), urls({"/b", "/a", "/c"}));
    QVERIFY(model.isMeasuring());
    model.takeMeasured({{.path = u"/b"_s, .isMeasured = true, .bytes = 3},
                        {.path = u"/a"_s, .isMeasured = true, .isFolder = true, .bytes = 4, .files = 1},
                        {.path = u"/c"_s, .isMeasured = true, .fault = u"gone"_s},
                        {.path = u"/removed meanwhile"_s, .isMeasured = true, .bytes = 99}});
    QVERIFY(!model.isMeasuring());
    QCOMPARE(model.totalBytes(), 7);
    QCOMPARE(summary(model), u"3 items · 7 bytes"_s);
    QCOMPARE(model.index(1).data(BulkUploadModel::DetailRole), u"1 file · 4 bytes"_s);
  }

  void theSelectionStaysInTheList() {
    BulkUploadModel model;
    const QAbstractItemModelTester tester(&model);
    model.add(urls({"/a", "/b", "/c"}));
    model.moveSelection(-1);
    QCOMPARE(model.selectedIndex(), 0);
    for (int press = 0; press < 5; ++press) model.moveSelection(+1);
    QCOMPARE(model.selectedIndex(), 2);
    model.removeSelected();
    QCOMPARE(model.selectedIndex(), 1);
    QCOMPARE(model.files(), urls({"/a", "/b"}));
    for (int press = 0; press < 5; ++press) model.removeSelected();
    QCOMPARE(model.rowCount(), 0);
    QCOMPARE(model.selectedIndex(), 0);
    QVERIFY(!model.isMeasuring());
    // What was removed may come back.
    QCOMPARE(model.add(urls({"/a"})).size(), 1);
  }

  void aResultGivesWayToTheNextItems() {
    BulkUploadModel model;
    model.add(urls({"/a"}));
    model.showUploading(0.5);
    QVERIFY(model.add(urls({"/b"})).isEmpty());
    model.finish(QUrl(u"https://links.example/x"_s));
    model.add(urls({"/b"}));
    QCOMPARE(model.files(), urls({"/b"}));
    model.fail(BulkUploadError::zipFailed(u"no room"_s));
    QCOMPARE(model.error()->description(), u"Couldn't create the zip: no room"_s);
    model.add(urls({"/c"}));
    QCOMPARE(model.files(), urls({"/b", "/c"}));
    QVERIFY(model.phase() == BulkUploadModel::Phase::collecting && !model.error());
  }

  void takenNamesGetACounter() {
    const QStringList paths = {
        u"/a/notes.txt"_s, u"/b/notes.txt"_s, u"/c/Notes.txt"_s, u"/d/notes-2.txt"_s, u"/a/.env"_s, u"/b/.env"_s,
        u"/a/Makefile"_s,  u"/b/Makefile"_s,  u"/a/x.tar.gz"_s,  u"/b/x.tar.gz"_s,    u"/"_s};
    QCOMPARE(names(archiveItems(paths)),
             QStringList({u"notes.txt"_s, u"notes-2.txt"_s, u"Notes-3.txt"_s, u"notes-2-2.txt"_s, u".env"_s,
                          u".env-2"_s, u"Makefile"_s, u"Makefile-2"_s, u"x.tar.gz"_s, u"x.tar-2.gz"_s, u"root"_s}));
  }

  void leftoversOfKilledProgramsGoAndNothingElse() {
    Tree tree;
    const QString killed = tree.path(u"VibeBulk-00000000-0000-4000-8000-00000000000A"_s);
    const auto make = [&](const QString& folder, mode_t mode, bool hasLock) {
      QDir().mkpath(folder);
      // Of a process that cannot be running any more.
      if (hasLock) writeFile(folder + u"/lock"_s, "4194999\nvantle\n" + QSysInfo::machineHostName().toUtf8() + "\n");
      writeFile(folder + u"/bulk-x.zip"_s, "PK");
      ::chmod(QFile::encodeName(folder).constData(), mode);
    };
    make(killed, 0700, true);
    make(tree.path(u"VibeBulk-00000000-0000-4000-8000-00000000000B"_s), 0755, true);
    make(tree.path(u"VibeBulk-00000000-0000-4000-8000-00000000000C"_s), 0700, false);
    make(tree.path(u"VibeBulk-mine"_s), 0700, true);
    tree.link(tree.path(u"VibeBulk-mine"_s), u"VibeBulk-00000000-0000-4000-8000-00000000000D"_s);
    const auto used = ArchiveFolder::make(tree.folder.path());
    QVERIFY(used && QFileInfo(used->get()->file(u"lock"_s)).exists());
    ArchiveFolder::removeLeftovers(tree.folder.path());
    QVERIFY(!QFileInfo::exists(killed));
    QCOMPARE(QDir(tree.folder.path()).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size(), 5);
    QVERIFY(QFileInfo::exists(tree.path(u"VibeBulk-mine/bulk-x.zip"_s)));
  }
};

QTEST_GUILESS_MAIN(TestDroppedItems)
#include "test_dropped_items.moc"
