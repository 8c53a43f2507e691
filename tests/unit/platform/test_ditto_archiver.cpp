#include <QTemporaryDir>
#include <QTest>

#include <thread>

#include "platform/mac/ditto_archiver.h"
#include "support/files.h"

using namespace Qt::StringLiterals;

namespace {

/// A program in ditto's place, which notes how it is called.
struct World {
  explicit World(const QByteArray& script) {
    if (!writeFile(path(u"ditto"_s),
                   "#!/bin/sh\nprintf '%s\\n' \"$*\" >> '" + path(u"calls"_s).toUtf8() + "'\n" + script))
      qFatal("cannot write");
    QFile::setPermissions(path(u"ditto"_s), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    writeFile(path(u"a b/notes.txt"_s), "1");
    QDir().mkpath(path(u"work"_s));
  }

  QString path(const QString& name) const { return folder.filePath(name); }
  auto pack(const std::stop_token& stop = {}) {
    ArchiveProgress progress;
    return DittoArchiver(path(u"ditto"_s))
        .pack({{path(u"a b/notes.txt"_s), u"notes-2.txt"_s}}, path(u"work/bulk.zip"_s), progress, stop);
  }
  QStringList left() const { return QDir(path(u"work"_s)).entryList(QDir::AllEntries | QDir::NoDotAndDotDot); }

  QTemporaryDir folder;
};

}  // namespace

class TestDittoArchiver : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void copiesUnderTheNamesAndPacksTheFolder() {
    World world("if [ \"$1\" = -c ]; then cp \"$4/notes-2.txt\" \"$5\"; else cp \"$1\" \"$2\"; fi\n");
    QVERIFY(world.pack());
    const QString staged = world.path(u"work/bulk-upload"_s);
    QCOMPARE(QString::fromUtf8(readFile(world.path(u"calls"_s))),
             u"%1 %2/notes-2.txt\n-c -k --sequesterRsrc %2 %3\n"_s.arg(world.path(u"a b/notes.txt"_s), staged,
                                                                       world.path(u"work/bulk.zip"_s)));
    QCOMPARE(world.left(), QStringList(u"bulk.zip"_s));
  }

  void itsOwnWordsSayWhatIsWrong() {
    World world("if [ \"$1\" = -c ]; then touch \"$5\"; echo 'No space left on device' >&2; exit 1; fi\n");
    QCOMPARE(world.pack().error().message, u"No space left on device"_s);
    QCOMPARE(world.left(), QStringList());
    QVERIFY(QFile::remove(world.path(u"ditto"_s)));
    QVERIFY(!world.pack().error().message.isEmpty());
  }

  void itEndsWhenItIsToStop() {
    World world("exec sleep 600\n");
    std::stop_source source;
    std::jthread stopper([&] {
      while (readFile(world.path(u"calls"_s)).isEmpty()) std::this_thread::yield();
      source.request_stop();
    });
    QVERIFY(world.pack(source.get_token()).error().wasCancelled);
    QCOMPARE(world.left(), QStringList());
  }
};

QTEST_GUILESS_MAIN(TestDittoArchiver)
#include "test_ditto_archiver.moc"
