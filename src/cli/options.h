#pragma once

#include <QCommandLineParser>

#include <expected>

#include "cli/command.h"

/// The options and words of one subcommand. Errors are messages for `usageError`.
class Options {
 public:
  /// One option that takes a value, or, with an empty value name, one that does not.
  struct Option {
    QLatin1StringView name;
    QLatin1StringView valueName;
  };

  static std::expected<Options, QString> parse(const QStringList& arguments, std::initializer_list<Option> known);

  bool has(QLatin1StringView name) const { return parser_->isSet(name); }
  QString value(QLatin1StringView name) const { return parser_->value(name); }
  /// Of an option that may be given several times.
  QStringList values(QLatin1StringView name) const { return parser_->values(name); }
  QStringList words() const { return parser_->positionalArguments(); }
  /// A whole number of at least 1; `otherwise` when the option is not there.
  std::expected<int, QString> count(QLatin1StringView name, int otherwise) const;

 private:
  std::shared_ptr<QCommandLineParser> parser_ = std::make_shared<QCommandLineParser>();
};
