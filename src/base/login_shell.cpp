#include "base/login_shell.h"

#include <QFile>

using namespace Qt::StringLiterals;

ShellCall loginShellCall(const QString& line, const QString& shell) {
  // Without SHELL the one that new accounts get on macOS; a system that comes without it has sh.
  const QString standard = QFile::exists(u"/bin/zsh"_s) ? u"/bin/zsh"_s : u"/bin/sh"_s;
  const QString program = shell.isEmpty() ? standard : shell;
  const QString name = program.section(u'/', -1);
  if (name == "zsh"_L1 || name == "bash"_L1) return {program, {u"-l"_s, u"-i"_s, u"-c"_s, line}};
  return {program, {u"-l"_s, u"-c"_s, line}};
}
