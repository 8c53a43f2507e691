#include "base/login_shell.h"

using namespace Qt::StringLiterals;

ShellCall loginShellCall(const QString& line, const QString& shell) {
  const QString program = shell.isEmpty() ? u"/bin/zsh"_s : shell;
  const QString name = program.section(u'/', -1);
  if (name == "zsh"_L1 || name == "bash"_L1) return {program, {u"-l"_s, u"-i"_s, u"-c"_s, line}};
  return {program, {u"-l"_s, u"-c"_s, line}};
}
