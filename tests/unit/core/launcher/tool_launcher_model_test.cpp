#include "core/ui/launcher/tool_launcher_model.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

#include "support/world.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class ToolLauncherModelTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void pagesAndRowsFollowTheNumberOfTools() {
    ToolWorld world;
    ToolLauncherModel model(world.clock);
    QCOMPARE(model.pageCount(), 1);
    QCOMPARE(model.gridRows(), 0);
    const std::vector<ToolItem> all = world.registry.items();
    struct Case {
      int tools, pages, rows;
    };
    for (const Case& expected :
         {Case{1, 1, 1}, Case{3, 1, 1}, Case{4, 1, 2}, Case{9, 1, 3}, Case{10, 2, 3}, Case{14, 2, 3}}) {
      model.reset({all.begin(), all.begin() + expected.tools});
      QCOMPARE(model.pageCount(), expected.pages);
      QCOMPARE(model.gridRows(), expected.rows);
    }
  }

  void theHighlightStopsAtTheEnds() {
    ToolWorld world;
    ToolLauncherModel model(world.clock);
    model.move(1);
    QVERIFY(!model.selectedItem());

    model.reset(world.registry.items());
    model.move(-3);
    QCOMPARE(model.selectionIndex(), 0);
    model.move(8);
    QCOMPARE(model.currentPage(), 0);
    model.move(1);
    QCOMPARE(model.currentPage(), 1);
    model.move(3);
    model.move(3);
    QCOMPARE(model.selectionIndex(), 13);
    QSignalSpy changes(&model, &ToolLauncherModel::changed);
    model.move(1);
    QCOMPARE(model.selectionIndex(), 13);
    QCOMPARE(changes.size(), 0);
  }

  void theQueryFiltersInAnyCaseAndKeepsTheHighlight() {
    ToolWorld world;
    ToolLauncherModel model(world.clock);
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    model.reset(world.registry.items());
    model.select(u"image-ask"_s);
    model.setQuery(u"iMaGe"_s);
    QStringList names;
    for (const ToolItem& item : model.items()) names.append(item.tool->name());
    QCOMPARE(names, QStringList({u"Image to URL"_s, u"Image to Prompt"_s, u"Image Ask"_s, u"Generate Image"_s}));
    QCOMPARE(model.totalCount(), 14);
    QCOMPARE(model.selectedItem()->id(), u"image-ask"_s);

    model.setQuery(u"image t"_s);
    QCOMPARE(model.selectedItem()->id(), u"uplink"_s);
    model.setQuery(u"image to nothing"_s);
    QCOMPARE(model.count(), 0);
    QVERIFY(!model.selectedItem());
    model.setQuery({});
    QCOMPARE(model.count(), 14);
    QVERIFY(model.selectedItem());
  }

  void casePairsOfTheUsersLocaleCount() {
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::Turkish));
    ToolWorld world;
    ToolLauncherModel model(world.clock);
    model.reset(world.registry.items());
    for (const QString& query : {u"image"_s, u"IMAGE"_s, u"ımage"_s}) {
      model.setQuery(query);
      QCOMPARE(model.count(), 4);
    }
    QLocale::setDefault(before);
  }

  void aPulseEndsByItselfAndANewOneStartsTheTimeAnew() {
    ToolWorld world;
    ToolLauncherModel model(world.clock);
    model.pulse(u"uplink"_s);
    world.clock.advance(300ms);
    model.pulse(u"feedback"_s);
    world.clock.advance(300ms);
    QCOMPARE(model.pulseID(), u"feedback"_s);
    QSignalSpy changes(&model, &ToolLauncherModel::changed);
    world.clock.advance(300ms);
    QCOMPARE(model.pulseID(), QString());
    QCOMPARE(changes.size(), 1);
  }
};

QTEST_GUILESS_MAIN(ToolLauncherModelTest)
#include "tool_launcher_model_test.moc"
