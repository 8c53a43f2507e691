#pragma once

#include "service/ai/provider.h"

/// A program that reads a prompt from its standard input and writes the answer to its standard output, such as an agent
/// without its screen.
class CommandProvider final : public Provider {
 public:
  /// `line`: the program and its arguments, quoted as in a shell; no shell ever sees them. `folder`: below it each call
  /// has a folder of its own while it lasts, where the program runs and finds the pictures.
  CommandProvider(QString line, QString folder) : line_(std::move(line)), folder_(std::move(folder)) {}

  Answered<QString> ask(const Question& question, const AICall& call) override;
  /// Removes the folders of calls that a killed service has left in `folder`, and nothing else there.
  static void removeLeftovers(const QString& folder);

 private:
  QString line_;
  QString folder_;
};
