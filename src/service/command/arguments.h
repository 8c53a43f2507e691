#pragma once

#include <QMap>
#include <QStringList>

#include <expected>

/// A command line, and the configuration files that it names: words, and options with values. What stands on the
/// command line wins over files, and a later file over an earlier one.
class Arguments {
 public:
  /// Error: what is wrong.
  static std::expected<Arguments, QString> parse(const QStringList& arguments);

  const QStringList& words() const { return words_; }
  bool has(const QString& option) const { return values_.contains(option); }
  QString value(const QString& option, const QString& otherwise = {}) const { return values_.value(option, otherwise); }
  /// Error: it is there and not a number from `least` on.
  std::expected<int, QString> number(const QString& option, int otherwise, int least) const;
  /// The first option of the command line that is not among these; empty: none. Files may hold those of other commands.
  QString unexpected(const QStringList& allowed) const;

 private:
  std::expected<void, QString> readFile(const QString& path);

  QStringList words_;
  QMap<QString, QString> values_;
  QStringList given_;
};
