/// Kills a program a thousand times while it saves its settings and commands. Each time both files must be whole, and
/// be the last version that was saved or the one that was being saved.
///
/// A plain program and not a QtTest: the child is made by fork, which wants a process with one thread.
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstdio>
#include <new>
#include <random>
#include <thread>

#include "core/settings/app_settings.h"
#include "support/fake_clock.h"
#include "tools/frequent_clis/command_store.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kKills = 1'000;
/// Kills that must have hit a save halfway, or the test has shown nothing.
constexpr int kLeastInterrupted = 300;
/// Long enough for files of some tens of kilobytes.
constexpr qsizetype kEntries = 300;

/// How far the saving of one file has come: the version begun last, and the one that is saved for certain.
struct FileProgress {
  std::atomic<int> begun = 0;
  std::atomic<int> saved = 0;
};

/// In memory that outlives the child.
struct Progress {
  std::atomic<bool> isSaving = false;
  FileProgress settings;
  FileProgress commands;
};

QString mark(int version) { return u"version %1"_s.arg(version); }

[[noreturn]] void saveForEver(const Folders& folders, Progress& progress) {
  FakeClock clock;
  SettingsStore settings(folders.file(u"settings.json"_s));
  CommandStore commands(folders, clock);
  progress.isSaving = true;
  for (int version = std::max(progress.settings.begun, progress.commands.begun) + 1;; ++version) {
    progress.settings.begun = version;
    settings.update([&](AppSettings& record) { record.toolOrder = QStringList(kEntries, mark(version)); });
    progress.settings.saved = version;
    progress.commands.begun = version;
    commands.setCommands(std::vector<CLICommand>(kEntries, {.id = QUuid::createUuid(),
                                                            .title = mark(version),
                                                            .command = mark(version),
                                                            .pressReturn = false,
                                                            .icon = u"claude"_s}));
    commands.save();
    progress.commands.saved = version;
  }
}

/// The version that every entry bears; -1 when they differ, are too few, or the file is not JSON.
int versionOf(const QJsonArray& entries, const std::function<QString(const QJsonValue&)>& text) {
  if (entries.size() != kEntries) return -1;
  const QString first = text(entries[0]);
  const bool isWhole = std::ranges::all_of(entries, [&](const QJsonValue& entry) { return text(entry) == first; });
  return isWhole ? first.section(u' ', 1).toInt() : -1;
}

QJsonDocument parsed(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()) : QJsonDocument();
}

int savedSettings(const Folders& folders) {
  const QJsonArray order = parsed(folders.file(u"settings.json"_s))["toolOrder"_L1].toArray();
  return versionOf(order, [](const QJsonValue& entry) { return entry.toString(); });
}

int savedCommands(const Folders& folders) {
  const QJsonArray commands = parsed(folders.file(u"FrequentCLIs/commands.json"_s)).array();
  return versionOf(commands, [](const QJsonValue& entry) { return entry["command"_L1].toString(); });
}

/// Removes what killed saves have left beside the files.
void sweep(const QString& folder) {
  for (const QString& name : QDir(folder).entryList({u"*.json.*"_s}, QDir::Files)) QFile::remove(folder + u'/' + name);
}

void killOnce(const Folders& folders, Progress& progress, std::chrono::microseconds delay) {
  progress.isSaving = false;
  const pid_t child = fork();
  if (child == 0) saveForEver(folders, progress);
  while (!progress.isSaving) std::this_thread::yield();
  std::this_thread::sleep_for(delay);
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
}

/// The file must hold the version that was saved last or the one whose saving was interrupted.
void check(const char* file, int found, FileProgress& progress, int kill) {
  const bool isCurrent = found == progress.saved || found == progress.begun;
  if (isCurrent || (found < 0 && progress.saved == 0)) {
    progress.saved = std::max(found, 0);
    return;
  }
  std::fprintf(stderr, "kill %d: %s holds version %d, neither %d nor %d\n", kill, file, found, progress.saved.load(),
               progress.begun.load());
  std::exit(1);
}

}  // namespace

int main() {
  QTemporaryDir home;
  const Folders folders{home.path()};
  void* shared = mmap(nullptr, sizeof(Progress), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  Progress& progress = *new (shared) Progress;
  std::mt19937 random(20'260);
  std::uniform_int_distribution<int> delay(0, 4'000);
  int interrupted = 0;
  for (int kill = 1; kill <= kKills; ++kill) {
    killOnce(folders, progress, std::chrono::microseconds(delay(random)));
    interrupted +=
        progress.settings.begun > progress.settings.saved || progress.commands.begun > progress.commands.saved;
    sweep(folders.vantle());
    sweep(folders.file(u"FrequentCLIs"_s));
    check("settings.json", savedSettings(folders), progress.settings, kill);
    check("commands.json", savedCommands(folders), progress.commands, kill);
  }
  if (interrupted < kLeastInterrupted) {
    std::fprintf(stderr, "only %d of %d kills hit a save: nothing is shown\n", interrupted, kKills);
    return 1;
  }
  std::printf("%d kills, %d of them during a save; %d versions saved\n", kKills, interrupted,
              progress.settings.saved.load());
}
