#include <QTest>

#include "support/agent_home.h"
#include "tools/projects/project_folders.h"

using namespace Qt::StringLiterals;

namespace {

void fill(const QString& folder, const QStringList& names) {
  QDir().mkpath(folder);
  for (const QString& name : names) {
    QFile file(folder + u'/' + name);
    QVERIFY(file.open(QFile::WriteOnly));
  }
}

}  // namespace

class TestProjectFolders : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void theFirstRuleDecides_data() {
    QTest::addColumn<QString>("names");
    QTest::addColumn<QString>("tag");
    const std::pair<const char*, const char*> cases[] = {{"Package.swift package.json Dockerfile", "SW"},
                                                         {"App.xcodeproj", "SW"},
                                                         {"Cargo.toml go.mod", "RS"},
                                                         {"go.mod", "Go"},
                                                         {"Pipfile Dockerfile", "PY"},
                                                         {"mix.exs", "Ex"},
                                                         {"x.gemspec", "RB"},
                                                         {"composer.json", "PHP"},
                                                         {"pom.xml", "Jv"},
                                                         {"pom.xml Main.kt", "Kt"},
                                                         {"build.gradle.kts", "Kt"},
                                                         {"a.sln", "C#"},
                                                         {"package.json tsconfig.json", "TS"},
                                                         {"package.json", "JS"},
                                                         {"tsconfig.json", ""},
                                                         {"main.cc", "C++"},
                                                         {"Dockerfile index.html", "DKR"},
                                                         {"index.html", "WEB"},
                                                         {"cargo.toml", ""},
                                                         {"", ""}};
    for (const auto& [names, tag] : cases)
      QTest::newRow(qPrintable(QString::fromLatin1(names).replace(u' ', u'+') + u'.'))
          << QString::fromLatin1(names) << QString::fromLatin1(tag);
  }

  void theFirstRuleDecides() {
    QFETCH(const QString, names);
    QFETCH(const QString, tag);
    const QTemporaryDir folder;
    fill(folder.path(), names.split(u' ', Qt::SkipEmptyParts));
    QCOMPARE(QString(text(detectProjectKind(folder.path())).tag), tag);
  }

  void sessionsOfOneFolderMakeOneRow() {
    AgentHome home;
    const QString shop = home.path() + u"/it's shop"_s;
    fill(shop, {u"go.mod"_s});
    fill(home.path(), {u"file"_s});
    home.claude(u"old"_s, 1, shop);
    home.claude(u"new"_s, 3, shop);
    home.codex(u"mid"_s, 2, shop);
    home.claude(u"gone"_s, 4, u"/nowhere/at/all"_s);
    home.claude(u"notAFolder"_s, 5, home.path() + u"/file"_s);
    home.claude(u"other"_s, 0, home.path());
    const SessionTraceScanner scanner(home.path());
    const std::vector<ProjectFolder> folders = ProjectFolders(scanner).recent(true, true);
    QCOMPARE(folders.size(), 2);
    QCOMPARE(folders[0].path, shop);
    QCOMPARE(folders[0].sessionCount, 3);
    QVERIFY(folders[0].agents.contains(SessionAgent::codex) && folders[0].agents.contains(SessionAgent::claude));
    QCOMPARE(folders[0].kind, ProjectKind::go);
    QVERIFY(folders[0].resumeCommand.endsWith(u"claude --resume new"_s));
    QCOMPARE(folders[1].name(), QFileInfo(home.path()).fileName());
    QCOMPARE(ProjectFolders(scanner).recent(false, true).size(), 1);
  }
};

QTEST_APPLESS_MAIN(TestProjectFolders)
#include "test_project_folders.moc"
