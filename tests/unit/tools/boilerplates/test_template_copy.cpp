#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <QSet>
#include <QTemporaryDir>
#include <QTest>

#include <thread>

#include "support/files.h"
#include "support/full_disk.h"
#include "tools/boilerplates/template_copy.h"

using namespace Qt::StringLiterals;

namespace {

/// A template and a folder for projects.
struct Places {
  QTemporaryDir home;
  QString source = home.filePath(u"template"_s);
  QString place = home.filePath(u"work"_s);
  CopyProgress progress;

  Places() { QDir(home.path()).mkpath(u"template"_s), QDir(home.path()).mkpath(u"work"_s); }

  void put(const QString& path, const QByteArray& bytes = "x") const { writeFile(source + u'/' + path, bytes); }
  void link(const QString& path, const QByteArray& target) const {
    QVERIFY(symlink(target.constData(), QFile::encodeName(source + u'/' + path).constData()) == 0);
  }
  QByteArray made(const QString& path) const { return readFile(place + u"/shop/"_s + path); }
  bool exists(const QString& path) const { return QFileInfo::exists(place + u"/shop/"_s + path); }
  /// Everything in the folder for projects, half-made copies too.
  QStringList projects() const {
    return QDir(place).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
  }

  std::expected<MadeProject, CopyError> copy(const QString& name = u"shop"_s, const std::stop_token& stop = {}) {
    return TemplateCopy(source, place, name).run(progress, stop);
  }
  /// The error's text; empty when there was none.
  QString failure(const QString& name = u"shop"_s) {
    const auto done = copy(name);
    return done ? QString() : done.error().description();
  }
};

mode_t modeOf(const QString& path) {
  struct stat status{};
  return ::lstat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 07777 : 0;
}

QByteArray linkTarget(const QString& path) {
  QByteArray target(4096, '\0');
  const ssize_t size = ::readlink(QFile::encodeName(path).constData(), target.data(), 4096);
  return target.left(std::max<ssize_t>(size, 0));
}

}  // namespace

class TestTemplateCopy : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void copiesEverythingButGitAndWhatIsIgnored() {
    Places places;
    places.put(u".git/config"_s);
    places.put(u"sub/.git"_s);
    places.put(u".gitignore"_s, "*.log\n/build/\n");
    places.put(u"a.log"_s);
    places.put(u"build/out"_s);
    places.put(u"sub/.gitignore"_s, "!kept.log\n/only-here\n");
    places.put(u"sub/kept.log"_s);
    places.put(u"sub/other.log"_s);
    places.put(u"sub/only-here"_s);
    places.put(u"only-here"_s);
    places.put(u".hidden/empty"_s, "");
    QDir(places.source).mkpath(u"nothing in it"_s);
    QCOMPARE(places.copy().value().path, places.place + u"/shop"_s);
    for (const QString& path :
         {u".gitignore"_s, u"sub/kept.log"_s, u"only-here"_s, u".hidden/empty"_s, u"nothing in it"_s})
      QVERIFY2(places.exists(path), qPrintable(path));
    for (const QString& path :
         {u".git"_s, u"sub/.git"_s, u"a.log"_s, u"build"_s, u"sub/other.log"_s, u"sub/only-here"_s})
      QVERIFY2(!places.exists(path), qPrintable(path));
    QCOMPARE(places.progress.files.load(), 5);
    QCOMPARE(places.progress.totalFiles.load(), 5);
    QCOMPARE(places.progress.bytes.load(), places.progress.totalBytes.load());
  }

  void keepsPermissionsAndLinks() {
    Places places;
    places.put(u"run"_s);
    places.put(u"closed/file"_s);
    ::chmod(QFile::encodeName(places.source + u"/run"_s).constData(), 0751);
    ::chmod(QFile::encodeName(places.source + u"/closed"_s).constData(), 0555);
    ::chmod(QFile::encodeName(places.source).constData(), 0710);
    places.link(u"loop"_s, ".");
    places.link(u"nowhere"_s, "/no/{{name}}");
    places.link(u"to-{{name}}"_s, "src/{{name}}.c");
    QVERIFY(places.copy());
    QCOMPARE(modeOf(places.place + u"/shop"_s), mode_t{0710});
    QCOMPARE(modeOf(places.place + u"/shop/run"_s), mode_t{0751});
    QCOMPARE(modeOf(places.place + u"/shop/closed"_s), mode_t{0555});
    QCOMPARE(linkTarget(places.place + u"/shop/loop"_s), QByteArray("."));
    QCOMPARE(linkTarget(places.place + u"/shop/nowhere"_s), QByteArray("/no/{{name}}"));
    QCOMPARE(linkTarget(places.place + u"/shop/to-shop"_s), QByteArray("src/shop.c"));
    for (const QString& folder : {places.source, places.place + u"/shop"_s})
      ::chmod(QFile::encodeName(folder + u"/closed"_s).constData(), 0755);
  }

  void fillsInTheName() {
    Places places;
    const QByteArray large(TemplateCopy::kLargestText - 8, 'x');
    places.put(u"{{name}}/{{name}}-{{other}}.txt"_s, "Größe {{name}} {{unknown}} {{name}}{{ name }}");
    places.put(u"just-fits"_s, large + "{{name}}");
    places.put(u"too-large"_s, large + "{{name}}!");
    places.put(u"binary"_s, QByteArray("\0{{name}}", 9));
    places.put(u"latin1"_s, "\xFC{{name}}");
    QVERIFY(places.copy());
    QCOMPARE(places.made(u"shop/shop-{{other}}.txt"_s), QByteArray("Größe shop {{unknown}} shop{{ name }}"));
    QCOMPARE(places.made(u"just-fits"_s), large + "shop");
    QCOMPARE(places.made(u"too-large"_s), large + "{{name}}!");
    QCOMPARE(places.made(u"binary"_s), QByteArray("\0{{name}}", 9));
    QCOMPARE(places.made(u"latin1"_s), QByteArray("\xFC{{name}}"));
  }

  void namesThatAreNotUnicodeSurvive() {
    Places places;
    const QByteArray odd = QFile::encodeName(places.source) + "/odd\xFF";
    const int file = ::open(odd.constData(), O_CREAT | O_WRONLY, 0600);
    QVERIFY(file >= 0 && ::close(file) == 0);
    QVERIFY(places.copy());
    QCOMPARE(::access((QFile::encodeName(places.place) + "/shop/odd\xFF").constData(), F_OK), 0);
    for (const QByteArray& path : {odd, QByteArray(QFile::encodeName(places.place) + "/shop/odd\xFF")})
      ::unlink(path.constData());
  }

  void refusesWhatIsThereAndWhatIsNoName() {
    Places places;
    places.put(u"a"_s);
    for (const QString& bad : {u""_s, u".."_s, u"a/b"_s, u"a\nb"_s, u"-rf"_s}) QVERIFY(!places.failure(bad).isEmpty());
    QVERIFY(symlink("/nowhere", QFile::encodeName(places.place + u"/shop"_s).constData()) == 0);
    QCOMPARE(places.failure(), places.place + u"/shop: it exists already"_s);
    QCOMPARE(places.projects(), QStringList{u"shop"_s});
    places.source += u"/missing"_s;
    QVERIFY(places.failure(u"other"_s).contains(u"missing: there is no such folder"_s));
    places.place += u"/missing"_s;
    QVERIFY(places.failure().contains(u"work/missing: there is no such folder"_s));
  }

  void whatIsNoFileIsSkippedAndNamed() {
    Places places;
    places.put(u"sub/file"_s);
    QVERIFY(::mkfifo(QFile::encodeName(places.source + u"/sub/pipe"_s).constData(), 0600) == 0);
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    qstrncpy(address.sun_path, QFile::encodeName(places.source + u"/sock"_s).constData(), sizeof address.sun_path);
    const int descriptor = ::socket(AF_UNIX, SOCK_STREAM, 0);
    QVERIFY(::bind(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0);
    ::close(descriptor);
    QCOMPARE(places.copy().value().skipped, QStringList({u"sock"_s, u"sub/pipe"_s}));
    QVERIFY(places.exists(u"sub/file"_s) && !places.exists(u"sub/pipe"_s) && !places.exists(u"sock"_s));
  }

  void twoFilesThatGetTheSameNameAreNamed() {
    Places twins;
    twins.put(u"shop"_s);
    twins.put(u"{{name}}"_s);
    QVERIFY(twins.failure().contains(u"another file of the template gets the same name"_s));
    QVERIFY(twins.projects().isEmpty());
  }

  void aPlaceInTheTemplateIsRefused() {
    Places places;
    places.put(u"projects/a"_s);
    const QString behindLink = places.home.filePath(u"link"_s);
    QVERIFY(QFile::link(places.source + u"/projects"_s, behindLink));
    for (const QString& place : {places.source, places.source + u"/projects"_s, behindLink}) {
      places.place = place;
      QVERIFY(places.failure().endsWith(u": this is in the template itself"_s));
      QVERIFY(!places.exists(u"."_s));
    }
  }

  void aPlaceThatCannotBeWrittenToIsNamed() {
    if (::geteuid() == 0) QSKIP("root may write anywhere");
    Places places;
    places.put(u"a"_s);
    ::chmod(QFile::encodeName(places.place).constData(), 0500);
    QVERIFY2(places.failure().startsWith(places.place + u": "_s), qPrintable(places.failure()));
    ::chmod(QFile::encodeName(places.place).constData(), 0700);
  }

  void whatAKilledCopyLeftIsRemoved() {
    Places places;
    places.put(u"a"_s);
    const QString dead = u".vantle-new-0123456789abcdef0123456789abcdef"_s;
    const QString alive = u".vantle-new-ffffffffffffffffffffffffffffffff"_s;
    const QString foreign = u".vantle-new-notes"_s;
    const QString file = u".vantle-new-00000000000000000000000000000000"_s;
    for (const QString& folder : {dead, alive, foreign})
      writeFile(places.place + u'/' + folder + u"/closed/file"_s, "x");
    writeFile(places.place + u'/' + file, "x");
    for (const QString& folder : {u"/closed"_s, u""_s})
      ::chmod(QFile::encodeName(places.place + u'/' + dead + folder).constData(), 0500);
    const int lock = ::open(QFile::encodeName(places.place + u'/' + alive).constData(), O_RDONLY | O_DIRECTORY);
    QVERIFY(::flock(lock, LOCK_EX | LOCK_NB) == 0);
    QVERIFY(places.copy());
    ::close(lock);
    const QStringList left = places.projects();
    QCOMPARE(QSet<QString>(left.begin(), left.end()), QSet<QString>({alive, foreign, file, u"shop"_s}));
    QVERIFY(QFileInfo::exists(places.place + u'/' + alive + u"/closed/file"_s));
  }

  void unreadableFilesAreNamed() {
    if (::geteuid() == 0) QSKIP("nothing is unreadable for root");
    for (const QString& path : {u"locked"_s, u"folder/locked"_s}) {
      Places places;
      places.put(u"aside/first"_s);
      places.put(path);
      const QByteArray locked = QFile::encodeName(places.source + u'/' + path.section(u'/', 0, 0));
      ::chmod(locked.constData(), 0);
      QVERIFY(places.failure().startsWith(QFile::decodeName(locked)));
      QVERIFY(places.projects().isEmpty());
      ::chmod(locked.constData(), 0755);
    }
  }

  void aFullDiskLeavesNothingBehind() {
    Places places;
    places.put(u"folder/a"_s);
    ::chmod(QFile::encodeName(places.source + u"/folder"_s).constData(), 0500);
    {
      const SmallestFiles full;
      QVERIFY(places.failure().startsWith(places.source + u"/folder/a: "_s));
    }
    QVERIFY(places.projects().isEmpty());
    ::chmod(QFile::encodeName(places.source + u"/folder"_s).constData(), 0755);
  }

  void aLargeFileIsCopiedByteForByte() {
    Places places;
    QByteArray bytes(20 * 1024 * 1024 + 7, Qt::Uninitialized);
    for (qsizetype i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * 31 >> 7);
    places.put(u"large"_s, bytes);
    QVERIFY(places.copy());
    QVERIFY(places.made(u"large"_s) == bytes);
    QCOMPARE(places.progress.bytes.load(), bytes.size());
  }

  void aLargeFileIsLeftHalfWay() {
    Places places;
    places.put(u"large"_s);
    QVERIFY(QFile::resize(places.source + u"/large"_s, 4LL << 30));
    std::stop_source stop;
    // Not by this thread's event loop, which looks too seldom on a busy machine.
    const std::jthread stopping([&](const std::stop_token& isOver) {
      while (places.progress.bytes == 0 && !isOver.stop_requested()) std::this_thread::yield();
      stop.request_stop();
    });
    const auto answer = places.copy(u"shop"_s, stop.get_token());
    QVERIFY(!answer && answer.error().wasCancelled && places.progress.bytes < 4LL << 30);
    QVERIFY(places.projects().isEmpty());
  }
};

QTEST_GUILESS_MAIN(TestTemplateCopy)
#include "test_template_copy.moc"
