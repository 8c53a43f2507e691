#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

#include "support/files.h"
#include "support/full_disk.h"
#include "tools/inject_md/inject_md_settings.h"
#include "tools/inject_md/md_injector.h"
#include "tools/inject_md/well_known_templates.h"

using namespace Qt::StringLiterals;

namespace {

using Overwrite = MDInjector::Overwrite;

MDDocument agents(const QString& contents = u"# AGENTS.md\n\nnew\n"_s) {
  return {QUuid::createUuid(), u"AGENTS.md"_s, contents};
}

}  // namespace

class TestInjectMD : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void everyTemplateHasSomethingToFillInInEachSection() {
    for (const QString& name : {u"AGENTS.md"_s, u"CLAUDE.md"_s, u"BOOTSTRAP.md"_s, u"SOUL.md"_s, u"BACKLOG.md"_s}) {
      const QString text = wellKnownTemplate(name);
      QVERIFY2(text.startsWith(u"# %1\n\n"_s.arg(name)) && text.endsWith(u'\n'), qPrintable(name));
      QVERIFY2(text.count("\n## "_L1) >= 2 && text.count("<!-- "_L1) >= text.count("\n## "_L1), qPrintable(name));
    }
  }

  void listOfFilesSurvivesARestart() {
    QTemporaryDir directory;
    const QString path = directory.filePath(u"inject-md.json"_s);
    InjectMDStore store(path);
    QCOMPARE(store.value().defaultDocument().fileName, u"AGENTS.md"_s);
    store.update([](InjectMDSettings& settings) {
      const auto soul = settings.add(u" SOUL.md "_s);
      settings.makeDefault(*soul);
      settings.setContents(*soul, u"mine ✎"_s);
    });
    QVERIFY(InjectMDStore(path).value() == store.value());
    QCOMPARE(InjectMDStore(path).value().defaultDocument().contents, u"mine ✎"_s);
    store.update([](InjectMDSettings& settings) { settings.resetToDefault(settings.defaultDocumentID); });
    QCOMPARE(store.value().defaultDocument().contents, wellKnownTemplate(u"SOUL.md"_s));
    store.update([](InjectMDSettings& settings) { settings.remove(settings.defaultDocumentID); });
    QCOMPARE(store.value().defaultDocument().fileName, u"AGENTS.md"_s);
    store.update([](InjectMDSettings& settings) { settings.remove(settings.defaultDocumentID); });
    QCOMPARE(store.value().documents.size(), std::size_t(1));
  }

  void namesThatCannotBeFilesAreRefused() {
    InjectMDSettings settings;
    for (const QString& name :
         {u""_s, u" "_s, u".."_s, u"a/b.md"_s, u"a\nb.md"_s, u"a\u009bb"_s, QString(90, QChar(0x4e2d)), u"AGENTS.md"_s})
      QVERIFY2(!settings.add(name), qPrintable(name));
    QCOMPARE(settings.documents.size(), std::size_t(1));
    QCOMPARE(settings.add(u"x/y"_s).error(), u"The file name has a slash in it."_s);
    QVERIFY(settings.add(QString(85, QChar(0x4e2d))));
  }

  void readsTheEarlierLayout() {
    QTemporaryDir directory;
    const QString path = directory.filePath(u"inject-md.json"_s);
    QVERIFY(writeFile(path, R"({"fileName":"CLAUDE.md","template":"old words"})"));
    InjectMDStore store(path);
    QCOMPARE(store.value().documents.size(), std::size_t(1));
    QCOMPARE(store.value().defaultDocument().contents, u"old words"_s);
    store.update([](InjectMDSettings& settings) { QVERIFY(settings.add(u"SOUL.md"_s)); });
    QCOMPARE(InjectMDStore(path).value().documents.size(), std::size_t(2));
  }

  void aStrangeNameInTheEarlierLayoutIsKeptBeside() {
    QTemporaryDir directory;
    const QString path = directory.filePath(u"inject-md.json"_s);
    QVERIFY(writeFile(path, R"({"fileName":"../CLAUDE.md","template":"old words"})"));
    InjectMDStore store(path);
    QCOMPARE(store.value().defaultDocument().fileName, u"AGENTS.md"_s);
    store.update([](InjectMDSettings& settings) { QVERIFY(settings.add(u"SOUL.md"_s)); });
    QVERIFY2(readFile(path + u".corrupt"_s).contains("old words"), "nothing of the user's is lost");
  }

  void oddListsAreReadAsFarAsTheyGo() {
    QTemporaryDir directory;
    const QString path = directory.filePath(u"inject-md.json"_s);
    QVERIFY(writeFile(path, R"({"documents":[{"id":"x","fileName":"A.md","template":"a"},
        {"id":"x","fileName":"../evil","template":"b"},7,{"fileName":"a\u0000b","template":"b"},{"id":"x","fileName":"B.md","template":"b"}],
        "defaultDocumentID":"none"})"));
    InjectMDStore store(path);
    QCOMPARE(store.value().documents.size(), std::size_t(2));
    QVERIFY(store.value().documents[0].id != store.value().documents[1].id);
    QCOMPARE(store.value().defaultDocument().fileName, u"A.md"_s);
    store.update([](InjectMDSettings& settings) { settings.makeDefault(settings.documents[1].id); });
    QVERIFY(readFile(path + u".corrupt"_s).contains("../evil"));
    for (const char* const useless : {R"({"documents":[]})", "[]", "{"}) {
      QVERIFY(writeFile(path, useless));
      QCOMPARE(InjectMDStore(path).value().defaultDocument().fileName, u"AGENTS.md"_s);
    }
  }

  void writesIntoAFolder() {
    QTemporaryDir directory;
    const QString folder = directory.filePath(u"it's a “ф”"_s);
    QVERIFY(QDir().mkdir(folder));
    const MDInjector injector(agents(u"ünï\n"_s), folder);
    QVERIFY(!*injector.inspect());
    QVERIFY(injector.write(Overwrite::no));
    QCOMPARE(readFile(injector.targetPath()), QByteArray("ünï\n"));
    QCOMPARE(QDir(folder).entryList(QDir::Files | QDir::Hidden), QStringList(u"AGENTS.md"_s));
  }

  void overwritesOnlyWhenTold() {
    QTemporaryDir directory;
    const MDInjector injector(agents(), directory.path());
    QVERIFY(writeFile(injector.targetPath(), "# AGENTS.md\nold\nolder\n\n"));
    QVERIFY(QFile::setPermissions(injector.targetPath(), QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup));
    QCOMPARE((*injector.inspect())->effect, u"adds 1 line, removes 2 lines"_s);
    QVERIFY(injector.write(Overwrite::no).error().description().startsWith(u"Couldn’t write AGENTS.md: "_s));
    QVERIFY(readFile(injector.targetPath()).contains("older"));
    QVERIFY(injector.write(Overwrite::yes));
    QVERIFY(readFile(injector.targetPath()).endsWith("new\n"));
    struct stat status{};
    QCOMPARE(stat(QFile::encodeName(injector.targetPath()).constData(), &status), 0);
    QCOMPARE(status.st_mode & 07777, mode_t(0640));
    QCOMPARE((*injector.inspect())->effect, u"nothing would change"_s);
  }

  void linksStayLinksAndLeadNowhereUnseen() {
    QTemporaryDir directory;
    const MDInjector injector(agents(), directory.path());
    const QString elsewhere = directory.filePath(u"CLAUDE.md"_s);
    QVERIFY(QFile::link(elsewhere, injector.targetPath()));
    QVERIFY(!injector.inspect() && !injector.write(Overwrite::yes));
    QVERIFY(!QFileInfo::exists(elsewhere));
    QVERIFY(writeFile(elsewhere, "old"));
    QVERIFY(injector.write(Overwrite::yes));
    QVERIFY(QFileInfo(injector.targetPath()).isSymLink());
    QVERIFY(readFile(elsewhere).endsWith("new\n"));
  }

  void saysWhatCannotBeCompared_data() {
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QString>("effect");
    QTest::newRow("binary") << QByteArray(
                                   "\x7f"
                                   "ELF\0\0\n",
                                   7)
                            << u"replaces a file that is not text"_s;
    QTest::newRow("Latin-1") << QByteArray("caf\xe9\n") << u"replaces a file that is not text"_s;
    QTest::newRow("cut in a character") << QByteArray("caf\xc3") << u"replaces a file that is not text"_s;
    QTest::newRow("large") << QByteArray(2 << 20, 'x') << u"replaces a file of more than 1 MB"_s;
    QTest::newRow("a mark in front") << QByteArray("\xef\xbb\xbf# AGENTS.md\n\nnew\n")
                                     << u"adds 1 line, removes 1 line"_s;
    QTest::newRow("the same") << QByteArray("# AGENTS.md\n\nnew\n") << u"nothing would change"_s;
  }
  void saysWhatCannotBeCompared() {
    QFETCH(QByteArray, before);
    QTemporaryDir directory;
    const MDInjector injector(agents(), directory.path());
    QVERIFY(writeFile(injector.targetPath(), before));
    QTEST((*injector.inspect())->effect, "effect");
    QCOMPARE(readFile(injector.targetPath()), before);
    QVERIFY(injector.write(Overwrite::yes));
    QCOMPARE(readFile(injector.targetPath()), QByteArray("# AGENTS.md\n\nnew\n"));
  }

  void whatIsNoFileIsLeftAlone() {
    QTemporaryDir directory;
    const MDInjector injector(agents(), directory.path());
    QVERIFY(QDir(directory.path()).mkdir(u"AGENTS.md"_s));
    QVERIFY(!injector.write(Overwrite::yes));
    QVERIFY(QDir(directory.path()).rmdir(u"AGENTS.md"_s));
    QVERIFY(QFile::link(u"/tmp"_s, injector.targetPath()));
    QCOMPARE(injector.write(Overwrite::yes).error().reason, u"there is a folder of that name"_s);
    QVERIFY(QFile::remove(injector.targetPath()));
    QVERIFY(QFile::link(injector.targetPath(), injector.targetPath()));
    QCOMPARE(injector.write(Overwrite::yes).error().reason, u"it is a link that leads nowhere"_s);
    QVERIFY(QFile::remove(injector.targetPath()));
    QCOMPARE(mkfifo(QFile::encodeName(injector.targetPath()).constData(), 0600), 0);
    QVERIFY(!injector.inspect() && !injector.write(Overwrite::yes));
    QVERIFY(!MDInjector(agents(), directory.filePath(u"gone"_s)).write(Overwrite::yes));
    QVERIFY(!MDInjector({QUuid(), u"../x"_s, u"x"_s}, directory.path()).write(Overwrite::yes));
    // Nobody may write there, root neither.
    const auto refused = MDInjector(agents(), u"/proc"_s).write(Overwrite::yes);
    QVERIFY(!refused && !refused.error().reason.isEmpty());
  }

  void aFullDiskLeavesTheOldFile() {
    QTemporaryDir directory;
    const MDInjector injector(agents(), directory.path());
    QVERIFY(writeFile(injector.targetPath(), "old"));
    {
      const SmallestFiles full;
      QVERIFY(!injector.write(Overwrite::yes));
    }
    QCOMPARE(readFile(injector.targetPath()), QByteArray("old"));
    QCOMPARE(QDir(directory.path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
  }
};

QTEST_GUILESS_MAIN(TestInjectMD)
#include "test_inject_md.moc"
