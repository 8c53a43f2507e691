#pragma once

#include <QTextStream>

#include "service/command/arguments.h"

/// The program's commands. Each returns its exit status and writes errors to stderr; those but "serve" also work while
/// the service runs.
namespace commands {

constexpr int kSuccess = 0;
constexpr int kFailure = 1;
constexpr int kUsage = 2;

int serve(const Arguments& arguments);
int token(const Arguments& arguments);
int plan(const Arguments& arguments);
int link(const Arguments& arguments);
int exportLines(const Arguments& arguments);
int purge(const Arguments& arguments);

/// Writes it as this program's, and returns `status`.
int fail(const QString& text, int status = kFailure);
/// The same for a wrong call; with the usage.
int refuse(const QString& text);
QString usage();

}  // namespace commands
