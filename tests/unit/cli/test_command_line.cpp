#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include "cli/command.h"
#include "core/settings/app_settings.h"
#include "support/fake_platform.h"
#include "support/files.h"
#include "tools/boilerplates/boilerplate_settings.h"
#include "tools/open_project/open_project_settings.h"
#include "tools/projects/new_projects.h"

using namespace Qt::StringLiterals;

namespace {

/// One run of the command line and what it printed.
struct Run {
  Run(const QStringList& arguments, const Folders& folders, const std::vector<Hotkey>& taken = {}, bool trusted = true,
      const QString& shortcuts = {}) {
    QTextStream outStream(&out);
    QTextStream errStream(&err);
    CommandContext context{outStream,
                           errStream,
                           folders,
                           folders.applicationSupport,
                           [] { return false; },
                           [taken, trusted, shortcuts] {
                             Platform platform = makeNullPlatform();
                             auto hotkeys = std::make_unique<FakeHotkeys>();
                             hotkeys->taken = taken;
                             platform.hotkeys = std::move(hotkeys);
                             auto permissions = std::make_unique<FakePermissions>();
                             permissions->trusted = trusted;
                             permissions->shortcuts = shortcuts;
                             platform.permissions = std::move(permissions);
                             return platform;
                           }};
    code = runCommandLine(arguments, context);
  }
  QString out;
  QString err;
  int code = -1;
};

}  // namespace

class TestCommandLine : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    directory_ = std::make_unique<QTemporaryDir>();
    folders_.applicationSupport = directory_->path();
    qputenv("XDG_RUNTIME_DIR", directory_->path().toUtf8());
  }

  void toolsWithoutAShortcutAreListed() {
    SettingsStore(folders_.file(u"settings.json"_s)).update([](AppSettings& record) {
      record.pinnedTools = {u"feedback"_s};
      record.hotkeys[u"feedback"_s] = std::nullopt;
    });
    const Run json({u"tools"_s, u"--json"_s}, folders_);
    QVERIFY(QJsonDocument::fromJson(json.out.toUtf8())[0]["shortcut"_L1].isNull());
    QVERIFY(Run({u"tools"_s}, folders_).out.startsWith(u"feedback          Feedback"_s));
  }

  void injectWritesOnceAndOverwritesWhenForced() {
    const QString path = directory_->filePath(u"CLAUDE.md"_s);
    const QStringList arguments{u"inject"_s, u"CLAUDE.md"_s, directory_->path()};
    QCOMPARE(Run(arguments, folders_).out, path + u'\n');
    const Run again(arguments, folders_);
    QCOMPARE(again.code, exit_code::kFailure);
    QVERIFY2(again.err.contains("is already there; with --force: nothing would change"_L1), qPrintable(again.err));
    QCOMPARE(Run(arguments + QStringList(u"--force"_s), folders_).code, exit_code::kSuccess);
    const Run unknown({u"inject"_s, u"X.md"_s, directory_->path()}, folders_);
    QVERIFY2(unknown.err.contains("there are AGENTS.md, CLAUDE.md, BOOTSTRAP.md"_L1), qPrintable(unknown.err));
    QCOMPARE(Run({u"inject"_s, u"CLAUDE.md"_s}, folders_).code, exit_code::kUsage);
  }

  void newMakesAProjectOnce() {
    QVERIFY(QDir().mkpath(directory_->filePath(u"templates/web/{{name}}"_s)));
    BoilerplateStore(folders_.file(u"boilerplates.json"_s)).update([this](BoilerplateSettings& settings) {
      settings.add(directory_->filePath(u"templates/web"_s));
    });
    const QString target = directory_->filePath(u"shop"_s);
    QCOMPARE(Run({u"new"_s, u"Web"_s, target + u'/'}, folders_).out, target + u'\n');
    QVERIFY(QDir(target + u"/shop"_s).exists());
    QCOMPARE(NewProjectStore(folders_.file(u"new-projects.json"_s)).value().paths, QStringList(target));
    const Run again({u"new"_s, u"web"_s, target}, folders_);
    QCOMPARE(again.err, u"vantle: %1: it exists already\n"_s.arg(target));
    QCOMPARE(again.code, exit_code::kFailure);
    const Run unknown({u"new"_s, u"rust"_s, target}, folders_);
    QVERIFY2(unknown.err.contains("there is no boilerplate 'rust'\n    web  "_L1), qPrintable(unknown.err));
    QCOMPARE(Run({u"new"_s, u"web"_s}, folders_).code, exit_code::kUsage);
  }

  void openRunsTheCommandOfTheSettings() {
    qputenv("SHELL", "/bin/sh");
    const QString folder = directory_->filePath(u"-it's\n\"$HOME\" %script"_s);
    const QString record = directory_->filePath(u"record"_s);
    QVERIFY(QDir().mkdir(folder));
    setCommand(u"cd %path && pwd >%1"_s.replace("%1"_L1, record));
    const Run opened({u"open"_s, folder + u"/./"_s}, folders_);
    QCOMPARE(opened.code, exit_code::kSuccess);
    QCOMPARE(QString::fromUtf8(readFile(record)), folder + u'\n');
    setCommand(u"no-such-terminal %path"_s);
    const Run failed({u"open"_s, folder}, folders_);
    QCOMPARE(failed.err, u"vantle: Command exited with code 127\n"_s);
    QCOMPARE(failed.code, exit_code::kFailure);
  }

  void openNamesWhatIsWrong() {
    setCommand(u"exit 9"_s);
    const QString file = directory_->filePath(u"file"_s);
    QVERIFY(writeFile(file, "x"));
    const struct {
      QStringList words;
      int code;
      QString says;
    } cases[] = {
        {{file}, exit_code::kFailure, file + u": this is not a folder\n"_s},
        {{u"/no/such\nplace"_s}, exit_code::kFailure, u"/no/such\\nplace: there is no such folder\n"_s},
        {{u"-x"_s}, exit_code::kUsage, u"x"_s},
        {{u"--"_s, u"-x"_s}, exit_code::kFailure, u"/-x: there is no such folder\n"_s},
        {{}, exit_code::kUsage, u"name one folder\n"_s},
        {{QString()}, exit_code::kUsage, u"name one folder\n"_s},
        {{u"/"_s, u"--with"_s, u"vi\nm"_s},
         exit_code::kUsage,
         u"there is no preset 'vi\\nm'; there are Default terminal, "_s},
        {{u"/"_s, u"--with"_s, u"cursor"_s, u"--agent"_s},
         exit_code::kUsage,
         u"only a terminal can start an agent: "_s},
        {{u"/"_s, u"--agent"_s}, exit_code::kUsage, u"only a terminal can start an agent: "_s},
    };
    for (const auto& [words, code, says] : cases) {
      const Run run(QStringList(u"open"_s) + words, folders_);
      QVERIFY2(run.err.contains(says), qPrintable(run.err));
      QCOMPARE(run.code, code);
    }
  }

  void doctorNamesWhatIsTaken() {
    const Run healthy({u"doctor"_s}, folders_);
    QVERIFY2(healthy.out.contains(u"all 18 are ours"_s), qPrintable(healthy.out));
    QCOMPARE(healthy.code, exit_code::kSuccess);
    const Run sick({u"doctor"_s}, folders_, {{32, 0x1800}, {49, 0x1800}, {14, 0x1800}});
    QVERIFY2(sick.out.contains(u"⌃⌥U Image to URL: taken by another program; ⌃⌥J is free"_s), qPrintable(sick.out));
    QVERIFY2(sick.out.contains(u"⌃⌥Space Launcher: taken by another program; ⌃⌥M is free"_s), qPrintable(sick.out));
    QCOMPARE(sick.code, exit_code::kFailure);
  }

  void doctorTellsBothPermissions() {
    const QString healthy = Run({u"doctor"_s}, folders_).out;
    QVERIFY2(healthy.contains(u"ok   Accessibility     allowed\nok   Screen Recording  allowed\n"_s),
             qPrintable(healthy));
    const Run sick({u"doctor"_s}, folders_, {}, false);
    QVERIFY2(sick.out.contains(u"!!   Accessibility     Enable Vantle in Settings.\n"_s), qPrintable(sick.out));
    QCOMPARE(sick.code, exit_code::kFailure);
  }

  void doctorPrintsWhatBindsTheShortcuts() {
    const Run left({u"doctor"_s}, folders_, {}, true, u"Bind them."_s);
    QVERIFY2(left.out.contains("!!   Shortcuts         Bind them.\n"_L1), qPrintable(left.out));
    QVERIFY2(!left.out.contains("are ours"_L1), qPrintable(left.out));
    QVERIFY2(left.out.contains("/test_command_line summon uplink\n"_L1), qPrintable(left.out));
    const Run rows({u"doctor"_s, u"--json"_s}, folders_, {}, true, u"Bind them."_s);
    int told = 0;
    for (const QJsonValue& row : QJsonDocument::fromJson(rows.out.toUtf8()).array())
      if (row["bindings"_L1]["commands"_L1].toArray().size() == 18 && row["text"_L1] == u"Bind them."_s) ++told;
    QCOMPARE(told, 1);
    const Run sway({u"doctor"_s, u"--bindings"_s, u"sway"_s}, folders_);
    QCOMPARE(sway.out.count("\nbindsym "_L1), 18);
    QCOMPARE(sway.code, exit_code::kSuccess);
    const Run json({u"doctor"_s, u"--bindings"_s, u"all"_s, u"--json"_s}, folders_);
    const auto answer = QJsonDocument::fromJson(json.out.toUtf8());
    QCOMPARE(answer["snippets"_L1].toArray().size(), 4);
    QCOMPARE(answer["commands"_L1][1]["command"_L1][2].toString(), u"uplink"_s);
    QCOMPARE(answer["commands"_L1][1]["shortcut"_L1].toString(), u"Ctrl+Alt+U"_s);
    const Run unknown({u"doctor"_s, u"--bindings"_s, u"twm"_s}, folders_);
    QCOMPARE(unknown.code, exit_code::kUsage);
    QVERIFY2(unknown.err.contains("there is no desktop 'twm' here"_L1), qPrintable(unknown.err));
  }

  void summonFailsWhenNothingCanBeStarted() {
    const Run run({u"summon"_s, u"launcher"_s}, folders_);
    QCOMPARE(run.code, exit_code::kFailure);
    QCOMPARE(run.err, u"vantle: the application cannot be started\n"_s);
  }

 private:
  void setCommand(const QString& command) {
    OpenProjectStore(folders_.file(u"open-project.json"_s)).update([&command](OpenProjectSettings& settings) {
      settings.command = command;
    });
  }

  std::unique_ptr<QTemporaryDir> directory_;
  Folders folders_;
};

QTEST_GUILESS_MAIN(TestCommandLine)
#include "test_command_line.moc"
