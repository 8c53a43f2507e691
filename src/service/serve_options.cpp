#include "service/serve_options.h"

#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace {

QString standardFolder() {
  return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/Vantle/service"_s;
}

bool readPort(const QString& text, std::uint16_t& port) {
  bool isNumber = false;
  port = text.toUShort(&isNumber);
  return isNumber;
}

}  // namespace

std::expected<ServeOptions, QString> ServeOptions::parse(const QStringList& arguments) {
  if (arguments.value(0) != "serve"_L1) return std::unexpected(u"the only command is 'serve'"_s);
  ServeOptions options;
  options.dataFolder = standardFolder();
  for (qsizetype i = 1; i < arguments.size(); ++i) {
    const QString& name = arguments[i];
    if (name == "--embedded"_L1) {
      options.isEmbedded = true;
      continue;
    }
    const QString value = arguments.value(++i);
    const bool isFolder = name == "--data"_L1;
    const bool isCredential = name == "--credential-file"_L1;
    if (isFolder) options.dataFolder = value;
    if (isCredential) options.credentialFile = value;
    const bool isPort = name == "--port"_L1 && readPort(value, options.port);
    if (value.isEmpty() || !(isFolder || isCredential || isPort))
      return std::unexpected(u"'%1 %2' is not understood"_s.arg(name, value).trimmed());
  }
  return options;
}

QString ServeOptions::usage() {
  return u"usage: vantle-service serve [--port N] [--data FOLDER] [--credential-file FILE] [--embedded]"_s;
}
