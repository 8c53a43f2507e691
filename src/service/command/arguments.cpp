#include "service/command/arguments.h"

#include <QFile>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

struct Option {
  QLatin1StringView name;
  bool takesValue = true;
};

constexpr std::array kOptions = {
    Option{"config"_L1},          Option{"data"_L1},
    Option{"database"_L1},        Option{"listen"_L1},
    Option{"public-url"_L1},      Option{"credential-file"_L1},
    Option{"trust-proxy"_L1},     Option{"rate-per-address"_L1},
    Option{"rate-per-token"_L1},  Option{"connections"_L1},
    Option{"patience"_L1},        Option{"connections-per-address"_L1},
    Option{"drain"_L1},           Option{"plan"_L1},
    Option{"answers"_L1},         Option{"text"_L1},
    Option{"image-answers"_L1},   Option{"image-generate"_L1},
    Option{"embedded"_L1, false}, Option{"service"_L1, false},
    Option{"ai-provider"_L1},     Option{"ai-base-url"_L1},
    Option{"ai-model"_L1},        Option{"ai-image-model"_L1},
    Option{"ai-command"_L1},      Option{"ai-key-file"_L1},
    Option{"ai-concurrency"_L1},  Option{"ai-time-limit"_L1},
    Option{"version"_L1, false},  Option{"help"_L1, false},
};

const Option* find(QStringView name) {
  const auto found = std::ranges::find_if(kOptions, [&](const Option& option) { return option.name == name; });
  return found == kOptions.end() ? nullptr : &*found;
}

}  // namespace

std::expected<Arguments, QString> Arguments::parse(const QStringList& arguments) {
  Arguments parsed;
  QMap<QString, QString> given;
  for (qsizetype i = 0; i < arguments.size(); ++i) {
    const QString& word = arguments[i];
    if (!word.startsWith("--"_L1)) {
      parsed.words_.append(word);
      continue;
    }
    const Option* const option = find(QStringView(word).mid(2));
    if (!option) return std::unexpected(u"there is no option '%1'"_s.arg(word));
    if (option->takesValue && ++i == arguments.size()) return std::unexpected(u"'%1' wants a value"_s.arg(word));
    const QString value = option->takesValue ? arguments[i] : QString();
    if (option->name != "config"_L1) {
      given.insert(option->name, value);
      continue;
    }
    if (const auto read = parsed.readFile(value); !read) return std::unexpected(read.error());
  }
  parsed.given_ = given.keys();
  parsed.values_.insert(given);
  return parsed;
}

std::expected<void, QString> Arguments::readFile(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return std::unexpected(u"'%1' cannot be read"_s.arg(path));
  const QStringList lines = QString::fromUtf8(file.read(1'000'000)).split(u'\n');
  for (const QString& written : lines) {
    const QString line = written.trimmed();
    if (line.isEmpty() || line.startsWith(u'#')) continue;
    const auto equals = line.indexOf(u'=');
    const Option* const option = find(QStringView(line).first(std::max<qsizetype>(equals, 0)).trimmed());
    if (!option || !option->takesValue || option->name == "config"_L1)
      return std::unexpected(u"'%1' is not understood in %2"_s.arg(line.section(u'=', 0, 0).trimmed(), path));
    values_.insert(option->name, line.mid(equals + 1).trimmed());
  }
  return {};
}

std::expected<int, QString> Arguments::number(const QString& option, int otherwise, int least) const {
  if (!has(option)) return otherwise;
  bool isNumber = false;
  const int number = value(option).toInt(&isNumber);
  if (!isNumber || number < least) return std::unexpected(u"--%1 wants a number from %2 on"_s.arg(option).arg(least));
  return number;
}

QString Arguments::unexpected(const QStringList& allowed) const {
  for (const QString& option : given_)
    if (!allowed.contains(option)) return option;
  return {};
}
