#include "app/menu/menu_model.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

#include "support/world.h"

using namespace Qt::StringLiterals;

namespace {

struct Menu : World {
  explicit Menu(std::vector<Hotkey> taken = {}) {
    hotkeyBackend.taken = std::move(taken);
    bootstrap();
    model.reset();
  }

  QStringList titles() const {
    QStringList titles;
    for (const MenuRow& row : model.rows()) titles.append(row.kind == MenuRow::Kind::separator ? u"—"_s : row.title);
    return titles;
  }
  const MenuRow& row(const QString& title) const { return model.rows()[std::size_t(titles().indexOf(title))]; }

  MenuModel model{registry, hotkeys};
  QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::QtTest};
};

}  // namespace

class MenuModelTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void listsTheToolsInTheRegistrysOrderAndTheApplicationBelow() {
    Menu menu;
    menu.registry.togglePin(u"feedback"_s);
    menu.model.refresh();
    const QStringList titles = menu.titles();
    QCOMPARE(titles.first(3), (QStringList{u"Feedback"_s, u"Frequent CLIs"_s, u"Image to URL"_s}));
    QCOMPARE(titles[14], u"—"_s);
    QCOMPARE(titles.mid(15).size(), qsizetype(kMenuEntries.size()));
    QCOMPARE(titles.last(), u"Quit Vantle"_s);
    QCOMPARE(menu.row(u"Image to URL"_s).caps, (QStringList{u"⌃"_s, u"⌥"_s, u"U"_s}));
  }

  void aQueryFiltersToolsAndEntriesAlike() {
    Menu menu;
    menu.model.setQuery(u"IMAGE TO"_s);
    QCOMPARE(menu.titles(), (QStringList{u"Image to URL"_s, u"Image to Prompt"_s}));
    menu.model.setQuery(u"quit"_s);
    QCOMPARE(menu.titles(), QStringList{u"Quit Vantle"_s});
    QCOMPARE(menu.model.selection(), 0);
    menu.model.setQuery(u"nothing like it"_s);
    QCOMPARE(menu.titles(), QStringList());
    QVERIFY(!menu.model.selectedRow());
    menu.model.moveSelection(+1);
    menu.model.selectLast();
    QVERIFY(!menu.model.selectedRow());
  }

  void theSelectionSkipsSeparatorsAndGoesRound() {
    Menu menu;
    const auto selected = [&menu] { return menu.model.selectedRow()->title; };
    menu.model.select(13);
    menu.model.moveSelection(+1);
    QCOMPARE(selected(), QString::fromUtf16(kMenuEntries.front().title));
    menu.model.moveSelection(-1);
    QCOMPARE(menu.model.selection(), 13);
    menu.model.select(14);
    QCOMPARE(menu.model.selection(), 13);
    QVERIFY(!menu.model.flags(menu.model.index(14)).testFlag(Qt::ItemIsEnabled));
    menu.model.selectLast();
    QCOMPARE(selected(), u"Quit Vantle"_s);
    menu.model.moveSelection(+1);
    QCOMPARE(selected(), u"Frequent CLIs"_s);
    menu.model.moveSelection(-1);
    QCOMPARE(selected(), u"Quit Vantle"_s);
  }

  void marksSayWhyAShortcutDoesNotWork() {
    Menu menu({toolInfo("inject-md"_L1).defaultHotkey});
    menu.setOnline(false);
    menu.registry.setEnabled(u"open-project"_s, false);
    menu.model.refresh();

    const MenuRow& offline = menu.row(u"Ask AI"_s);
    QVERIFY(!offline.isUsable);
    QCOMPARE(offline.note, u"Offline"_s);
    QCOMPARE(offline.reason, u"Needs the internet — offline right now"_s);
    const MenuRow& off = menu.row(u"Open Project"_s);
    QVERIFY(off.isUsable);
    QCOMPARE(off.note, u"Shortcut off"_s);
    const MenuRow& taken = menu.row(u"Inject MD"_s);
    QVERIFY(taken.isUsable);
    QCOMPARE(taken.note, u"Shortcut taken"_s);
    QVERIFY(menu.row(u"Frequent CLIs"_s).note.isEmpty());

    const QModelIndex row = menu.model.index(int(menu.titles().indexOf(u"Ask AI"_s)));
    QCOMPARE(row.data(Qt::AccessibleTextRole).toString(), u"Ask AI"_s);
    QCOMPARE(row.data(Qt::AccessibleDescriptionRole).toString(),
             u"Ctrl+Alt+K, Needs the internet — offline right now"_s);
  }

  void newsKeepTheSelectionOnItsRow() {
    Menu menu;
    QSignalSpy changed(&menu.model, &MenuModel::changed);
    menu.model.refresh();
    QCOMPARE(changed.size(), 0);
    menu.model.select(1);
    menu.registry.togglePin(u"feedback"_s);
    menu.model.refresh();
    QCOMPARE(menu.model.selection(), 2);
    QCOMPARE(menu.model.selectedRow()->title, u"Image to URL"_s);
    menu.model.reset();
    QCOMPARE(menu.model.selection(), 0);
  }
};

QTEST_GUILESS_MAIN(MenuModelTest)
#include "menu_model_test.moc"
