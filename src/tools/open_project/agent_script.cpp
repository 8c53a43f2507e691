#include "tools/open_project/agent_script.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QUuid>

#include <unistd.h>

#include "base/atomic_file.h"
#include "base/shell_quote.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto kOwnerOnly = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
constexpr auto kEverybodysFlags =
    QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup | QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
constexpr auto kExecutable = kOwnerOnly | QFile::ReadGroup | QFile::ExeGroup | QFile::ReadOther | QFile::ExeOther;

/// Whether nobody else can put anything into the folder: what lies there is run.
bool isPrivate(const QString& path) {
  const QFileInfo info(path);
  return info.isDir() && !info.isSymLink() && info.ownerId() == ::geteuid() && !(info.permissions() & kEverybodysFlags);
}

/// The temporary folder is everybody's: where another user was first with the name, a folder of a fresh name serves.
QString scriptFolder(const QString& temporaryFolder) {
  QString path = temporaryFolder + u"/QuarnelAgent"_s;
  QDir().mkdir(path, kOwnerOnly);
  if (isPrivate(path)) return path;
  QTemporaryDir fresh(path + u"-XXXXXX"_s);
  fresh.setAutoRemove(false);
  return fresh.isValid() ? fresh.path() : QString();
}

void removeOldScripts(const QString& folder) {
  const QDateTime yesterday = QDateTime::currentDateTime().addDays(-1);
  for (const QFileInfo& script : QDir(folder).entryInfoList({u"*.command"_s}, QDir::Files))
    if (script.lastModified() < yesterday) QFile::remove(script.filePath());
}

}  // namespace

QByteArray AgentScript::contents() const {
  // The one shell here that knows no ${…}.
  const bool isFish = shell.section(u'/', -1) == "fish"_L1;
  const QString stay = isFish ? u"exec $SHELL -i"_s : u"exec ${SHELL:-%1} -i"_s.arg(shell);
  return u"#!%1 -il\ncd %2 || exit 1\n%3\n%4"_s.arg(shell, shellQuote(folder), agentCommand, stay).toUtf8();
}

std::expected<QString, FileError> writeAgentScript(const AgentScript& script, const QString& temporaryFolder) {
  const QString folder = scriptFolder(temporaryFolder);
  if (folder.isEmpty()) return std::unexpected(FileError{temporaryFolder, u"No folder can be made there"_s});
  removeOldScripts(folder);
  QString path = u"%1/%2.command"_s.arg(folder, QUuid::createUuid().toString(QUuid::WithoutBraces));
  if (const auto written = writeFileAtomically(path, script.contents()); !written)
    return std::unexpected(written.error());
  if (!QFile::setPermissions(path, kExecutable))
    return std::unexpected(FileError{path, u"It cannot be made executable"_s});
  return path;
}
