#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

#include "support/agent_home.h"
#include "support/fake_clock.h"
#include "support/fake_palette.h"
#include "support/fake_platform.h"
#include "support/fake_presenters.h"
#include "tools/open_project/open_project_controller.h"

using namespace Qt::StringLiterals;

namespace {

std::vector<LaunchPreset> somePresets() {
  return {{u"Works"_s, u"test -d %path"_s, {}, {}, {}},
          {u"Fails"_s, u"test ! -d %path && exit"_s, {}, u"command -v no-such-program-here"_s, {}},
          {u"Last"_s, u"true %path"_s, {}, {}, {}}};
}

}  // namespace

class TestOpenProjectPalette : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void opensAndCopiesTheResumeCommand() {
    World world;
    world.settings.update([](OpenProjectSettings& settings) { settings.copyResume = true; });
    world.load();
    world.palette.handleKey(code(keycode::kReturn));
    QVERIFY(!world.palette.isShown());
    QTRY_COMPARE(world.toasts.shown.size(), 1U);
    QCOMPARE(world.toasts.shown.front().first.title, u"Opened it's · resume command copied"_s);
    QVERIFY(world.pasteboard.texts.front().endsWith(u"codex resume two"_s));
  }

  void aFailureSaysSoAndCopiesNothing() {
    World world;
    world.settings.update([](OpenProjectSettings& settings) {
      settings.copyResume = true;
      settings.command = u"no-such-program-here %path"_s;
    });
    world.load();
    world.palette.handleKey(code(keycode::kReturn));
    QTRY_COMPARE(world.toasts.shown.size(), 1U);
    QCOMPARE(world.toasts.shown.front().first.title, u"Couldn’t open"_s);
    QCOMPARE(world.toasts.shown.front().first.detail, u"Command exited with code 127"_s);
    QVERIFY(world.pasteboard.texts.isEmpty());
  }

  void asksForTheCommandAndGoesBack() {
    World world;
    world.settings.update([](OpenProjectSettings& settings) { settings.askForCommand = true; });
    world.load();
    OpenProjectModel& model = world.palette.model();
    const QAbstractItemModelTester tester(&model);
    typeInto(world.palette, u"plain"_s);
    world.palette.handleKey(code(keycode::kReturn));
    QVERIFY(model.isChoosingCommand());
    QCOMPARE(model.query(), QString());
    QCOMPARE(model.index(0).data(), u"Works"_s);
    world.palette.handleKey(letter(u'#'));
    QCOMPARE(model.emptyText(), u"No matching commands"_s);
    world.palette.handleKey(code(keycode::kEscape));
    QVERIFY(world.palette.isShown() && !model.isChoosingCommand());
    QCOMPARE(model.query(), u"plain"_s);
    QCOMPARE(model.selectedFolder()->name(), u"plain"_s);
    world.palette.handleKey(code(keycode::kReturn));
    world.palette.choose(world.row(u"Fails"_s).row());
    QTRY_COMPARE(world.toasts.shown.size(), 1U);
    QCOMPARE(world.toasts.shown.front().first.detail, u"Command exited with code 1"_s);
  }

  void everyShowStartsWithTheProjects() {
    World world;
    world.load();
    world.palette.handleKey(code(keycode::kReturn, true));
    QVERIFY(world.palette.model().isChoosingCommand());
    world.palette.hide();
    world.load();
    QVERIFY(!world.palette.model().isChoosingCommand());
    world.palette.handleKey(code(keycode::kEscape));
    QVERIFY(!world.palette.isShown());
  }

  void whatIsNotInstalledIsMarked() {
    World world;
    QSignalSpy changed(&world.installed, &InstalledPresets::changed);
    world.load();
    world.palette.handleKey(code(keycode::kReturn, true));
    QTRY_COMPARE(changed.size(), 1);
    QVERIFY(world.installed.isInstalled(u"Works"_s));
    QVERIFY(world.row(u"Fails"_s).data(OpenProjectModel::IsMissingRole).toBool());
    QCOMPARE(world.row(u"Fails"_s).data(Qt::AccessibleTextRole), u"Fails, not installed"_s);
    // Shown rows keep their places; in what is listed anew the missing ones come last.
    typeInto(world.palette, u"s"_s);
    QCOMPARE(world.palette.model().index(2).data(), u"Fails"_s);
  }

  void theUsualCommandIsSelected() {
    World world;
    world.settings.update([](OpenProjectSettings& settings) { settings.command = somePresets()[1].command; });
    world.load();
    world.palette.handleKey(code(keycode::kReturn, true));
    QCOMPARE(world.palette.model().selectedPreset()->name, u"Fails"_s);
  }

  void aProjectThatWasMadeHereStaysListed() {
    World world;
    OpenProjectModel& model = world.palette.model();
    const QString made = world.directory.filePath(u"made"_s);
    QDir().mkdir(made);
    world.palette.add(made);
    world.palette.offer(made);
    world.palette.handleKey(code(keycode::kDown));
    const QString selected = model.selectedPreset()->name;
    QTRY_VERIFY(!model.isLoading());
    QCOMPARE(model.selectedPreset()->name, selected);
    world.palette.handleKey(code(keycode::kEscape));
    QCOMPARE(model.rowCount(), 3);
    QCOMPARE(model.selectedFolder()->path, made);
    QVERIFY(model.index(0).data(Qt::AccessibleTextRole).toString().startsWith(u"made, %1, "_s.arg(made)));
    QCOMPARE(model.index(0).data(Qt::AccessibleTextRole).toString().count(u','), 2);
    world.palette.hide();
    // The command line, meanwhile, has made another and the user has deleted the first.
    NewProjectStore(world.newProjectsFile).update([&](NewProjects& projects) {
      projects.add(world.home.path());
      projects.add(world.directory.filePath(u"plain"_s));
    });
    QDir().rmdir(made);
    world.palette.show();
    QTRY_VERIFY(!model.isLoading());
    QCOMPARE(model.rowCount(), 3);
    QCOMPARE(model.filtered().front().path, world.home.path());
  }

  void keysOfTheFileSurvive() {
    World world;
    world.settings.update([](OpenProjectSettings& settings) {
      settings.command = u"code %path"_s;
      settings.agentYolo = true;
    });
    QCOMPARE(OpenProjectStore(world.file).value(), world.settings.value());
    QCOMPARE(OpenProjectStore(u"/nonexistent"_s).value(), OpenProjectSettings());
  }

 private:
  struct World {
    World() {
      for (const QString& name : {u"it's"_s, u"plain"_s}) QDir(directory.path()).mkdir(name);
      home.claude(u"one"_s, 1, directory.filePath(u"plain"_s));
      home.codex(u"two"_s, 2, directory.filePath(u"it's"_s));
    }
    void load() {
      palette.show();
      QTRY_COMPARE(palette.model().rowCount(), 2);
    }
    QModelIndex row(const QString& name) {
      const OpenProjectModel& model = palette.model();
      return model.match(model.index(0), Qt::DisplayRole, name, 1, Qt::MatchExactly).value(0);
    }

    AgentHome home;
    QTemporaryDir directory;
    QString file = directory.filePath(u"open-project.json"_s);
    FakeClock clock;
    FakePasteboard pasteboard;
    FakeToasts toasts;
    FakeLauncherOpener opener;
    OpenProjectStore settings{file};
    QString newProjectsFile = directory.filePath(u"new-projects.json"_s);
    NewProjectStore newProjects{newProjectsFile};
    VibeHistoryStore history{directory.filePath(u"history.json"_s)};
    SessionTraceScanner scanner{home.path()};
    ProjectLauncher launcher{{somePresets(), u"/bin/sh"_s, directory.path(), u"/bin/sh"_s}, clock};
    InstalledPresets installed{somePresets(), u"/bin/sh"_s};
    OpenProjectController palette{
        {settings, history, scanner, launcher, installed, pasteboard, newProjects, toasts, clock, opener},
        home.path(),
        &SilentPanel::make};
  };
};

QTEST_GUILESS_MAIN(TestOpenProjectPalette)
#include "test_open_project_palette.moc"
