#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <signal.h>

#include "support/fake_clock.h"
#include "support/fake_platform.h"
#include "tools/open_project/agent_script.h"
#include "tools/open_project/open_project_settings.h"
#include "tools/open_project/project_launcher.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kOwnerOnly = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;

class MacSystem final : public SystemInfo {
 public:
  QString osVersion() const override { return u"macOS 14"_s; }
  QString thisComputer() const override { return u"this Mac"_s; }
  QString systemName() const override { return u"macOS"_s; }
  QString fileManager() const override { return u"Finder"_s; }
  QString systemSettings() const override { return u"System Settings"_s; }
  bool isMotionReduced() const override { return false; }
  QString shortcutOwnerHint() const override { return {}; }
};

/// A terminal that is a shell: it writes down where it is and what it was given.
LaunchPreset recorder(const QString& file) {
  return {u"Recorder"_s,
          u"cd %path && pwd > '%1'"_s.replace("%1"_L1, file),
          u"env SHELL=/bin/true %script > '%1'"_s.replace("%1"_L1, file),
          {},
          {}};
}

QByteArray read(const QString& path) {
  QFile file(path);
  return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}

}  // namespace

class TestOpenProject : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void placeholdersAreFilledInOnce() {
    QCOMPARE(expandTemplate(u"a %path %script %arg %pat 100%"_s, {u"/w/it's %script"_s, u"/t/x y"_s}),
             uR"(a '/w/it'\''s %script' '/t/x y' 'it'\''s %script' %pat 100%)"_s);
  }

  void flagsGoByTheProgram() {
    OpenProjectSettings settings;
    settings.autoRunAgent = settings.agentYolo = true;
    const std::pair<QString, QString> cases[] = {
        {u" claude "_s, u"claude --dangerously-skip-permissions"_s},
        {u"/opt/bin/codex  -m x"_s, u"/opt/bin/codex  -m x --yolo"_s},
        {u"gemini --yolo -v"_s, u"gemini --yolo -v"_s},
        {u"claude --dangerously-skip-permissions"_s, u"claude --dangerously-skip-permissions"_s},
        {u"aider"_s, u"aider"_s},
        {u"  "_s, QString()}};
    for (const auto& [command, effective] : cases) {
      settings.agentCommand = command;
      QCOMPARE(settings.effectiveAgentCommand(), effective);
    }
    settings.autoRunAgent = false;
    settings.agentCommand = u"codex"_s;
    QCOMPARE(settings.effectiveAgentCommand(), QString());
  }

  void presetsAreThoseOfTheSystem() {
    const auto mac = launchPresets(MacSystem());
    QCOMPARE(mac.front().command, u"open -a Terminal %path"_s);
    QCOMPARE(terminalNames(mac), u"Terminal, iTerm, Ghostty, WezTerm, or kitty"_s);
    const auto linux = launchPresets(FakeSystem());
    QCOMPARE(linux.front().name, u"Default terminal"_s);
    QVERIFY(!presetNamed(linux, u"Xcode"_s));
    QVERIFY(!presetNamed(linux, u"vs code"_s)->isTerminal());
    for (const auto& presets : {mac, linux}) {
      for (const LaunchPreset& preset : presets) {
        QVERIFY(preset.command.contains("%path"_L1));
        QVERIFY(!preset.isTerminal() || preset.scriptedCommand.contains("%script"_L1));
        QCOMPARE(presetOf(presets, preset.command)->name, preset.name);
      }
    }
  }

  void aScriptIsTheUsersOwn() {
    const QTemporaryDir temporary;
    const AgentScript script{u"/w/it's"_s, u"codex --yolo"_s, u"/bin/zsh"_s};
    const auto path = writeAgentScript(script, temporary.path());
    QVERIFY(path.has_value());
    QCOMPARE(read(*path), "#!/bin/zsh -il\ncd '/w/it'\\''s' || exit 1\ncodex --yolo\nexec ${SHELL:-/bin/zsh} -i"_qba);
    QVERIFY(QFile::permissions(*path) & QFile::ExeOther);
    const QString folder = QFileInfo(*path).path();
    QCOMPARE(folder, temporary.path() + u"/QuarnelAgent"_s);
    QVERIFY(!(QFile::permissions(folder) & (QFile::ReadGroup | QFile::ExeOther)));
    QVERIFY(*writeAgentScript(script, temporary.path()) != *path);
  }

  void aFolderThatOthersCanWriteToIsNotTrusted() {
    const QTemporaryDir temporary;
    const QString shared = temporary.filePath(u"QuarnelAgent"_s);
    QDir().mkdir(shared);
    QFile::setPermissions(shared, kOwnerOnly | QFile::WriteGroup);
    const auto path = writeAgentScript({u"/w"_s, u"x"_s, u"/bin/sh"_s}, temporary.path());
    QVERIFY(path.has_value() && !path->startsWith(shared + u'/'));
    QVERIFY(QDir(shared).isEmpty());
    removeAgentScript(*path);
    QCOMPARE(QDir(temporary.path()).entryList(QDir::Dirs | QDir::NoDotAndDotDot), QStringList(u"QuarnelAgent"_s));
    QVERIFY(!writeAgentScript({u"/w"_s, u"x"_s, u"/bin/sh"_s}, u"/proc/none"_s).has_value());
  }

  void aLinkIsNotFollowed() {
    const QTemporaryDir temporary;
    const QTemporaryDir elsewhere;
    QVERIFY(QFile::link(elsewhere.path(), temporary.filePath(u"QuarnelAgent"_s)));
    const auto path = writeAgentScript({u"/w"_s, u"x"_s, u"/bin/sh"_s}, temporary.path());
    QVERIFY(path.has_value() && QDir(elsewhere.path()).isEmpty());
    QVERIFY(!path->startsWith(temporary.filePath(u"QuarnelAgent/"_s)));
  }

  void oldScriptsAreRemoved() {
    const QTemporaryDir temporary;
    const AgentScript script{u"/w"_s, u"x"_s, u"/bin/sh"_s};
    const QString old = *writeAgentScript(script, temporary.path());
    const QString young = *writeAgentScript(script, temporary.path());
    QFile file(old);
    QVERIFY(file.open(QFile::ReadWrite));
    QVERIFY(file.setFileTime(QDateTime::currentDateTime().addDays(-2), QFile::FileModificationTime));
    file.close();
    removeOldAgentScripts(temporary.path());
    QVERIFY(!QFile::exists(old) && QFile::exists(young));
  }

  void opensAFolderOfAnyName_data() {
    QTest::addColumn<QString>("shell");
    for (const char* shell : {"/bin/bash", "/bin/sh", "/bin/zsh", "/usr/bin/fish"})
      if (QFile::exists(QString::fromLatin1(shell))) QTest::newRow(shell) << QString::fromLatin1(shell);
  }

  void opensAFolderOfAnyName() {
    QFETCH(const QString, shell);
    World world(shell);
    const QString folder = world.directory.filePath(
        uR"(it's a “Größe” 日本 $HOME `x` \'; exit 7; \\' !!
#)"_s);
    QDir().mkdir(folder);
    QVERIFY2(world.open({folder, {}, {}}).has_value(), qPrintable(world.text()));
    QCOMPARE(QString::fromUtf8(read(world.record)).trimmed(), folder);
    QVERIFY2(world.open({folder, {}, u"pwd"_s}).has_value(), qPrintable(world.text()));
    QCOMPARE(QString::fromUtf8(read(world.record)).trimmed(), folder);
  }

  /// Before a terminal is taken to have come up.
  void failuresSayWhyAtOnce() {
    World world(u"/bin/sh"_s);
    QVERIFY(!world.open({u"/"_s, u"no-such-program-here %path"_s, {}}).has_value());
    QCOMPARE(world.text(), u"Command exited with code 127"_s);
    QVERIFY(!world.open({u"/"_s, u"exit 3"_s, {}}).has_value());
    QCOMPARE(world.text(), u"Command exited with code 3"_s);
    QVERIFY(!world.open({u"/"_s, u"kill -9 $$"_s, {}}).has_value());
    QCOMPARE(world.text(), u"Command exited with code 137"_s);
    World shellless(u"/nonexistent/zsh"_s);
    QVERIFY(!shellless.open({u"/"_s, u"true"_s, {}}).has_value());
    QVERIFY(!shellless.text().isEmpty());
  }

  void aTerminalThatNeverCameLeavesNoScript() {
    World world(u"/bin/sh"_s, u"no-such-program-here %script"_s);
    QVERIFY(!world.open({u"/"_s, {}, u"claude"_s}).has_value());
    QVERIFY(QDir(world.directory.filePath(u"QuarnelAgent"_s)).isEmpty());
  }

  void anEditorGetsNoScript() {
    World world(u"/bin/sh"_s, QString());
    QVERIFY(world.open({world.directory.path(), {}, u"claude"_s}).has_value());
    QVERIFY(!QFile::exists(world.directory.filePath(u"QuarnelAgent"_s)));
  }

  void aTerminalThatStaysHasOpened() {
    World world(u"/bin/sh"_s);
    const pid_t terminal = world.startUntilTold(5);
    QVERIFY(world.results.empty());
    world.clock.advance(ProjectLauncher::kSettled);
    QCOMPARE(world.results.size(), 1U);
    QVERIFY(world.results.front().has_value());
    world.clock.advance(ProjectLauncher::kFollowed);
    world.tell();
    QTRY_VERIFY(::kill(terminal, 0) != 0);
    QCOMPARE(world.results.size(), 1U);
  }

  void aFailureAfterASlowProfileIsStillTold() {
    World world(u"/bin/sh"_s);
    for (const int code : {0, 127}) {
      const pid_t terminal = world.startUntilTold(code);
      world.clock.advance(ProjectLauncher::kSettled);
      world.tell();
      QTRY_VERIFY(::kill(terminal, 0) != 0);
    }
    QCOMPARE(world.results.size(), 3U);
    QCOMPARE(world.text(), u"Command exited with code 127"_s);
  }

  void aScriptIsRemovedWhenItHasServed() {
    World world(u"/bin/sh"_s);
    QVERIFY(world.open({u"/"_s, {}, u"true"_s}).has_value());
    const QDir scripts(world.directory.filePath(u"QuarnelAgent"_s));
    QCOMPARE(scripts.count(), 3U);
    world.clock.advance(kAgentScriptLife);
    QVERIFY(scripts.isEmpty());
  }

 private:
  struct World {
    explicit World(const QString& shell) : World(shell, recorder({}).scriptedCommand, true) {}
    World(const QString& shell, const QString& scripted, bool records = false)
        : launcher({{preset(scripted, records)}, shell, directory.path(), shell}, clock) {}

    LaunchPreset preset(const QString& scripted, bool records) const {
      LaunchPreset preset = recorder(record);
      if (!records) preset.scriptedCommand = scripted;
      return preset;
    }
    void start(const LaunchRequest& request) {
      launcher.open(request, [this](const auto& result) { results.push_back(result); });
    }
    /// A command that ends with `code` when it is told to; its process.
    pid_t startUntilTold(int code) {
      if (!QFile::exists(pipe)) QProcess::execute(u"mkfifo"_s, {pipe});
      QFile::remove(record);
      start({u"/"_s, u"echo $$ > '%1'; read line < '%2'; exit %3"_s.arg(record, pipe).arg(code), {}});
      if (!QTest::qWaitFor([this] { return read(record).endsWith('\n'); })) return 0;
      return read(record).trimmed().toInt();
    }
    void tell() const {
      QFile file(pipe);
      if (file.open(QFile::WriteOnly)) file.write("\n");
    }
    std::expected<void, LaunchError> open(const LaunchRequest& request) {
      const std::size_t before = results.size();
      start(request);
      if (!QTest::qWaitFor([&] { return results.size() > before; })) return std::unexpected(LaunchError{u"late"_s});
      return results.back();
    }
    QString text() const { return results.back() ? QString() : results.back().error().description(); }

    QTemporaryDir directory;
    QString record = directory.filePath(u"record"_s);
    QString pipe = directory.filePath(u"pipe"_s);
    FakeClock clock;
    ProjectLauncher launcher;
    std::vector<std::expected<void, LaunchError>> results;
  };
};

QTEST_GUILESS_MAIN(TestOpenProject)
#include "test_open_project.moc"
