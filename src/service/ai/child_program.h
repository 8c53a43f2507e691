#pragma once

#include <QByteArrayList>

#include "service/ai/provider.h"

/// A program to run: in a process group of its own, in a folder, with bytes on its standard input.
struct ChildProgram {
  /// The first is the program's whole path.
  QByteArrayList words;
  QByteArray folder;
  QByteArray input;
  /// Of its standard output, in bytes.
  qsizetype longest = 1'000'000;
};

struct ChildOutcome {
  QByteArray output;
  /// The beginning of its standard error.
  QByteArray errors;
  /// 0 when all went well; of one that a signal ended, 128 and its number.
  int status = 0;
};

/// Waits until it has ended, at most until the call's deadline; then, or when nobody wants its answer any more, it is
/// ended with everything that it has started. `onOutput` gets what it writes as it comes.
Answered<ChildOutcome> runProgram(const ChildProgram& program, const AICall& call,
                                  const std::function<void(QByteArrayView)>& onOutput);
