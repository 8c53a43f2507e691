#pragma once

#include <QStringList>

/// A program and its arguments.
struct ShellCall {
  QString program;
  QStringList arguments;

  bool operator==(const ShellCall&) const = default;
};

/// Runs `line` as the user's own terminal would, so that programs are found which only the shell's profile knows: by
/// `shell` (the value of SHELL; when empty /bin/zsh, or /bin/sh where there is none) as a login shell, and an
/// interactive one where the shell takes both together with a command.
ShellCall loginShellCall(const QString& line, const QString& shell);
