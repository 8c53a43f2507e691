#include <QAbstractItemModelTester>
#include <QTest>

#include "tools/projects/project_list_model.h"

using namespace Qt::StringLiterals;

namespace {

const QDateTime kNow(QDate(2026, 11, 21), QTime(15, 0));

ProjectFolder project(const QString& path) {
  return {path,
          FileTime(std::chrono::milliseconds(kNow.addSecs(-300).toMSecsSinceEpoch())),
          2,
          {SessionAgent::claude, SessionAgent::codex},
          ProjectKind::rust,
          {}};
}

QStringList names(const ProjectListModel& model) {
  QStringList names;
  for (const ProjectFolder& folder : model.filtered()) names.append(folder.name());
  return names;
}

}  // namespace

class TestProjectList : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void filtersByNameAndPathAndKeepsWhatIsTypedMeanwhile() {
    ProjectListModel model(u"/home/me"_s);
    const QAbstractItemModelTester tester(&model);
    model.beginLoading(kNow);
    QCOMPARE(model.emptyText(), u"Looking for your projects…"_s);
    model.setQuery(u"WORK"_s);
    model.finishLoading({project(u"/home/me/work/shop"_s), project(u"/srv/blog"_s), project(u"/x/homework"_s)});
    QCOMPARE(names(model), QStringList({u"shop"_s, u"homework"_s}));
    model.setQuery(u"claude"_s);
    QCOMPARE(model.emptyText(), u"No matching projects"_s);
    QVERIFY(!model.selectedFolder());
    model.beginLoading(kNow);
    model.finishLoading({});
    QCOMPARE(model.emptyText(), u"No project folders found in your session history"_s);
  }

  void aRowSaysWhereWhatAndWhen() {
    ProjectListModel model(u"/home/me"_s);
    model.beginLoading(kNow);
    model.finishLoading({project(u"/home/me/a\nb"_s), project(u"/home/meyer"_s)});
    QCOMPARE(model.index(0).data(ProjectListModel::PathRole), u"~/a\\nb"_s);
    QCOMPARE(model.index(1).data(ProjectListModel::PathRole), u"/home/meyer"_s);
    QCOMPARE(model.index(0).data(ProjectListModel::KindTagRole), u"RS"_s);
    QCOMPARE(model.index(0).data(Qt::AccessibleTextRole), u"a\\nb, ~/a\\nb, Claude Code and Codex, 5 min ago"_s);
  }
};

QTEST_GUILESS_MAIN(TestProjectList)
#include "test_project_list.moc"
