#include "cli/options.h"

using namespace Qt::StringLiterals;

std::expected<Options, QString> Options::parse(const QStringList& arguments, std::initializer_list<Option> known) {
  Options options;
  for (const Option& option : known) options.parser_->addOption(QCommandLineOption(option.name, {}, option.valueName));
  if (options.parser_->parse(QStringList(u"vantle"_s) + arguments)) return options;
  QString message = options.parser_->errorText();
  message.chop(message.endsWith(u'.') ? 1 : 0);
  return std::unexpected(message.isEmpty() ? message : message.left(1).toLower() + message.mid(1));
}

std::expected<int, QString> Options::count(QLatin1StringView name, int otherwise) const {
  if (!has(name)) return otherwise;
  bool isNumber = false;
  const int count = value(name).toInt(&isNumber);
  if (isNumber && count > 0) return count;
  return std::unexpected(u"--%1 takes a number of at least 1"_s.arg(name));
}
