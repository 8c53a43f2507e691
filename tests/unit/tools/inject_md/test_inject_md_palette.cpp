#include <QAbstractItemModelTester>
#include <QDir>
#include <QSignalSpy>
#include <QTest>

#include "support/agent_home.h"
#include "support/fake_clock.h"
#include "support/fake_palette.h"
#include "support/fake_presenters.h"
#include "support/files.h"
#include "tools/inject_md/inject_md_palette_controller.h"
#include "tools/inject_md/well_known_templates.h"

using namespace Qt::StringLiterals;

namespace {

using Step = InjectMDPaletteModel::Step;

/// A home with one project, in which an agent has worked, and one whose folder is gone.
struct World {
  World() {
    QDir().mkpath(project);
    home.claude(u"one"_s, 2, project);
    home.claude(u"two"_s, 1, home.path() + u"/gone"_s);
  }
  void open() {
    palette.show();
    QTRY_VERIFY(!model.projects().isLoading());
  }
  void press(std::uint32_t keyCode) { QVERIFY(palette.handleKey(code(keyCode))); }
  void type(const QString& text) { typeInto(palette, text); }
  QString title(int row) const { return model.index(row).data().toString(); }
  QString toast() const { return toasts.shown.empty() ? QString() : toasts.shown.back().first.title; }

  AgentHome home;
  QTemporaryDir directory;
  QString project = home.path() + u"/shop ä"_s;
  QString target = project + u"/AGENTS.md"_s;
  FakeClock clock;
  FakeToasts toasts;
  FakeLauncherOpener launcher;
  InjectMDStore settings{directory.filePath(u"inject-md.json"_s)};
  VibeHistoryStore history{directory.filePath(u"history.json"_s)};
  SessionTraceScanner scanner{home.path()};
  QString dialogTitle;
  InjectMDPaletteController::FolderAnswer chooseFolder;
  InjectMDPaletteController palette{{settings, history, scanner, toasts, clock, launcher,
                                     [this](const QString& asked, auto answered) {
                                       dialogTitle = asked;
                                       chooseFolder = std::move(answered);
                                     },
                                     home.path()},
                                    &SilentPanel::make};
  InjectMDPaletteModel& model = palette.model();
  QAbstractItemModelTester tester{&model};
};

}  // namespace

class TestInjectMDPalette : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void oneFileGoesStraightToTheProjects() {
    World world;
    world.open();
    QCOMPARE(world.model.prompt(), u"Filter projects…"_s);
    QCOMPARE(world.model.rowCount(), 2);
    QCOMPARE(world.title(0), u"shop ä"_s);
    QCOMPARE(world.title(1), u"Choose Folder…"_s);
    world.press(keycode::kReturn);
    QTRY_COMPARE(world.toast(), u"AGENTS.md is in place"_s);
    QCOMPARE(QString::fromUtf8(readFile(world.target)), wellKnownTemplate(u"AGENTS.md"_s));
    QVERIFY(!world.palette.isShown());
  }

  void severalFilesAreAskedFor() {
    World world;
    world.settings.update([](InjectMDSettings& settings) {
      settings.makeDefault(*settings.add(u"SOUL.md"_s));
      QVERIFY(settings.add(u"CLAUDE.md"_s));
    });
    world.open();
    QCOMPARE(world.model.prompt(), u"Which file do you want to inject?"_s);
    QCOMPARE(world.title(world.model.selectionIndex()), u"SOUL.md"_s);
    world.type(u"claud"_s);
    world.press(keycode::kReturn);
    QVERIFY(world.model.step() == Step::project && world.model.query().isEmpty());
    world.press(keycode::kEscape);
    QVERIFY(world.model.step() == Step::document && world.palette.isShown());
    world.press(keycode::kReturn);
    world.press(keycode::kReturn);
    QTRY_VERIFY(QFile::exists(world.project + u"/SOUL.md"_s));
    QTRY_COMPARE(world.toast(), u"SOUL.md is in place"_s);
  }

  void emptyListsSayWhy() {
    World world;
    const auto notice = [&world] { return world.model.index(0).data(InjectMDPaletteModel::NoticeRole).toString(); };
    world.palette.show();
    world.type(u"zzz"_s);
    QTRY_COMPARE(notice(), u"No matching projects"_s);
    QCOMPARE(world.title(0), u"Choose Folder…"_s);
    world.history.update([](VibeHistorySettings& settings) { settings.includeClaude = false; });
    world.open();
    QCOMPARE(notice(), u"No project folders found in your session history"_s);
    QCOMPARE(world.model.rowCount(), 1);
  }

  void whatIsThereIsOverwrittenOnlyWhenConfirmed() {
    World world;
    QVERIFY(writeFile(world.target, "mine\n"));
    world.open();
    world.press(keycode::kReturn);
    QTRY_COMPARE(world.model.step(), Step::overwrite);
    QCOMPARE(world.model.prompt(), u"Overwrite the existing file in ~/shop ä?"_s);
    world.type(u"y"_s);
    QVERIFY(world.model.query().isEmpty());
    world.press(keycode::kReturn);
    QVERIFY(!world.palette.isShown() && world.toasts.shown.empty());
    QCOMPARE(readFile(world.target), QByteArray("mine\n"));

    world.open();
    world.press(keycode::kReturn);
    QTRY_COMPARE(world.model.step(), Step::overwrite);
    world.press(keycode::kEscape);
    QCOMPARE(world.model.step(), Step::project);
    world.press(keycode::kReturn);
    QTRY_COMPARE(world.model.step(), Step::overwrite);
    world.press(keycode::kDown);
    QVERIFY(world.model.index(1).data(ProjectListModel::PathRole).toString().endsWith("lines, removes 1 line"_L1));
    QCOMPARE(world.model.changes().front(), (DiffLine{DiffLine::Kind::removed, u"mine"_s}));
    QSignalSpy turned(&world.palette, &InjectMDPaletteController::turned);
    world.press(keycode::kPageDown);
    QCOMPARE(turned, QList<QVariantList>{{1}});
    QCOMPARE(world.model.selectionIndex(), 1);
    world.press(keycode::kReturn);
    QTRY_COMPARE(world.toast(), u"AGENTS.md is in place"_s);
    QVERIFY(readFile(world.target).startsWith("# AGENTS.md"));
  }

  void anyFolderCanBeChosen() {
    World world;
    const QString folder = world.directory.path();
    QVERIFY(writeFile(folder + u"/AGENTS.md"_s, "mine\n"));
    world.open();
    world.press(keycode::kUp);
    world.press(keycode::kReturn);
    QCOMPARE(world.dialogTitle, u"Choose a folder to inject a Markdown file into"_s);
    QVERIFY(!world.palette.isShown());
    world.chooseFolder(folder);
    QTRY_VERIFY(world.palette.isShown());
    QCOMPARE(world.model.step(), Step::overwrite);
    world.press(keycode::kEscape);
    QTRY_COMPARE(world.model.rowCount(), 2);
    QCOMPARE(readFile(folder + u"/AGENTS.md"_s), QByteArray("mine\n"));
  }

  void anUnansweredChooserLosesNothing() {
    World world;
    world.settings.update([](InjectMDSettings& settings) { QVERIFY(settings.add(u"SOUL.md"_s)); });
    world.open();
    world.press(keycode::kDown);
    world.press(keycode::kReturn);
    world.type(u"sho"_s);
    world.press(keycode::kUp);
    world.press(keycode::kReturn);
    QVERIFY(!world.palette.isShown());
    world.chooseFolder(std::nullopt);
    QVERIFY(world.palette.isShown() && world.model.step() == Step::project);
    QCOMPARE(world.model.query(), u"sho"_s);
    QTRY_COMPARE(world.model.rowCount(), 2);
    world.press(keycode::kUp);
    world.press(keycode::kReturn);

    // Meanwhile the palette is used for another file: the chosen folder gets the one it was chosen for.
    world.palette.show();
    QVERIFY(world.model.step() == Step::document);
    world.chooseFolder(world.directory.path());
    QTRY_VERIFY(QFile::exists(world.directory.filePath(u"SOUL.md"_s)));
    QVERIFY(!QFile::exists(world.directory.filePath(u"AGENTS.md"_s)));
  }

  void escapeAfterAChooserLeadsBackToTheLauncher() {
    World world;
    world.launcher.startedFromLauncher = true;
    world.open();
    world.press(keycode::kUp);
    world.press(keycode::kReturn);
    world.chooseFolder(std::nullopt);
    world.press(keycode::kEscape);
    QVERIFY(!world.palette.isShown());
    QCOMPARE(world.launcher.shown.size(), 1);
  }

  void failuresAreTold() {
    World world;
    world.open();
    QVERIFY(QDir(world.project).removeRecursively());
    world.press(keycode::kReturn);
    QTRY_COMPARE(world.toast(), u"Couldn’t write AGENTS.md"_s);
    QCOMPARE(world.toasts.shown.back().first.detail, u"the folder is not there"_s);
    QVERIFY(!world.palette.isShown());
  }
};

QTEST_GUILESS_MAIN(TestInjectMDPalette)
#include "test_inject_md_palette.moc"
