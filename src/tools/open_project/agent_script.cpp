#include "tools/open_project/agent_script.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QUuid>

#include <sys/stat.h>
#include <unistd.h>
#include <algorithm>
#include <array>

#include "base/atomic_file.h"
#include "base/shell_quote.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto kOwnerOnly = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
constexpr auto kExecutable = kOwnerOnly | QFile::ReadGroup | QFile::ExeGroup | QFile::ReadOther | QFile::ExeOther;

constexpr auto kFolderName = "QuarnelAgent"_L1;
/// These know no ${…:-…}.
constexpr std::array kPlainShells = {"fish"_L1, "csh"_L1, "tcsh"_L1};

/// Whether nobody else can put anything into the folder, or could have put a link in its place: what lies there is run.
bool isPrivate(const QString& path) {
  struct stat found{};
  return ::lstat(QFile::encodeName(path).constData(), &found) == 0 && S_ISDIR(found.st_mode) &&
         found.st_uid == ::geteuid() && (found.st_mode & (S_IRWXG | S_IRWXO)) == 0;
}

/// The temporary folder is everybody's: where another user was first with the name, a folder of a fresh name serves.
QString scriptFolder(const QString& temporaryFolder) {
  QString path = temporaryFolder + u'/' + kFolderName;
  QDir().mkdir(path, kOwnerOnly);
  if (isPrivate(path)) return path;
  QTemporaryDir fresh(path + u"-XXXXXX"_s);
  fresh.setAutoRemove(false);
  return fresh.isValid() ? fresh.path() : QString();
}

}  // namespace

QByteArray AgentScript::contents() const {
  const bool isPlain = std::ranges::count(kPlainShells, shell.section(u'/', -1)) > 0;
  const QString stay = isPlain ? u"exec $SHELL -i"_s : u"exec ${SHELL:-%1} -i"_s.arg(shell);
  return u"#!%1 -il\ncd %2 || exit 1\n%3\n%4"_s.arg(shell, singleQuoted(folder), agentCommand, stay).toUtf8();
}

std::expected<QString, FileError> writeAgentScript(const AgentScript& script, const QString& temporaryFolder) {
  const QString folder = scriptFolder(temporaryFolder);
  if (folder.isEmpty()) return std::unexpected(FileError{temporaryFolder, u"No folder can be made there"_s});
  QString path = u"%1/%2.command"_s.arg(folder, QUuid::createUuid().toString(QUuid::WithoutBraces));
  if (const auto written = writeFileAtomically(path, script.contents()); !written)
    return std::unexpected(written.error());
  if (!QFile::setPermissions(path, kExecutable))
    return std::unexpected(FileError{path, u"It cannot be made executable"_s});
  return path;
}

void removeAgentScript(const QString& path) {
  QFile::remove(path);
  const QFileInfo folder(QFileInfo(path).path());
  if (folder.fileName() != kFolderName) QDir().rmdir(folder.filePath());
}

void removeOldAgentScripts(const QString& temporaryFolder) {
  const QDateTime limit = QDateTime::currentDateTime().addSecs(-std::chrono::seconds(kAgentScriptLife).count());
  const QDir temporary(temporaryFolder);
  for (const QFileInfo& folder : temporary.entryInfoList({kFolderName + u'*'}, QDir::Dirs | QDir::NoSymLinks)) {
    if (!isPrivate(folder.filePath())) continue;
    for (const QFileInfo& script : QDir(folder.filePath()).entryInfoList({u"*.command"_s}, QDir::Files))
      if (script.lastModified() < limit) removeAgentScript(script.filePath());
  }
}
