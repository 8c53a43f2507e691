#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <array>
#include <tuple>

#include "base/visible_text.h"
#include "cli/command_services.h"
#include "cli/config_settings.h"
#include "cli/options.h"
#include "cli/service_config.h"
#include "cli/service_findings.h"
#include "core/net/app_channel.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kShown = 300;
constexpr int kNameColumn = 24;

struct ModeName {
  ServiceMode mode;
  QLatin1StringView name;
};

constexpr std::array kModes = {
    ModeName{ServiceMode::builtIn, "built-in"_L1},
    ModeName{ServiceMode::ownHosts, "own"_L1},
    ModeName{ServiceMode::presetHosts, "standard"_L1},
};

/// None of the secrets themselves is in it.
QJsonObject serviceObject(const Folders& folders) {
  const ServiceConfiguration configuration(folders.file(u"services.json"_s));
  const ServiceSettings& settings = configuration.value();
  const auto mode = std::ranges::find(kModes, configuration.mode(), &ModeName::mode);
  return {{u"inUse"_s, mode->name},
          {u"api"_s, settings.api},
          {u"links"_s, settings.links},
          {u"hasToken"_s, !settings.token.isEmpty()}};
}

QJsonObject settingsObject(const ConfigStores& stores) {
  QJsonObject object;
  for (const ConfigSetting& setting : configSettings()) object.insert(setting.name, setting.read(stores));
  return object;
}

void print(QLatin1StringView name, const QString& value, QTextStream& out) {
  out << QString(name).leftJustified(kNameColumn) << visibleLine(value, kShown) << '\n';
}

void print(const Folders& folders, QTextStream& out) {
  const ConfigStores stores(folders);
  for (const ConfigSetting& setting : configSettings()) print(setting.name, setting.read(stores), out);
  const QJsonObject service = serviceObject(folders);
  const auto host = [&service](QLatin1StringView key) {
    const QString text = service[key].toString();
    return text.isEmpty() ? u"not set"_s : text;
  };
  print("service"_L1, service["inUse"_L1].toString(), out);
  print("service api"_L1, host("api"_L1), out);
  print("service links"_L1, host("links"_L1), out);
  print("service token"_L1, service["hasToken"_L1].toBool() ? u"set"_s : u"not set"_s, out);
}

int show(CommandContext& context, bool json) {
  const QString credential = keychainFinding(context.folders, *context.makePlatform().credentials).text;
  if (!json) {
    print(context.folders, context.out);
    print("service credential"_L1, credential, context.out);
    return exit_code::kSuccess;
  }
  QJsonObject service = serviceObject(context.folders);
  service.insert("credential"_L1, credential);
  const QJsonObject whole{{u"settings"_s, settingsObject(ConfigStores(context.folders))}, {u"service"_s, service}};
  context.out << QJsonDocument(whole).toJson(QJsonDocument::Indented);
  return exit_code::kSuccess;
}

int wrongSetting(const QString& message, CommandContext& context) {
  context.err << "vantle: " << message << '\n';
  for (const ConfigSetting& setting : configSettings())
    context.err << "    " << QString(setting.name).leftJustified(kNameColumn) << setting.values << '\n';
  return exit_code::kUsage;
}

int set(const QString& name, const QString& value, CommandContext& context) {
  const ConfigSetting* setting = configSetting(name);
  if (!setting) return wrongSetting(u"there is no setting '%1'"_s.arg(visibleLine(name, kShown)), context);
  ConfigStores stores(context.folders);
  if (setting->write(stores, value)) return exit_code::kSuccess;
  return wrongSetting(u"%1 cannot be '%2'"_s.arg(name, visibleLine(value, kShown)), context);
}

/// The running application takes over what has been written; without one there is nobody to tell.
int told(int code) {
  if (code == exit_code::kSuccess) std::ignore = AppClient::request({{u"do"_s, u"reload"_s}});
  return code;
}

}  // namespace

int runConfig(const QStringList& arguments, CommandContext& context) {
  const Command& command = commandNamed("config"_L1);
  const auto options = Options::parse(arguments, {{"json"_L1, {}}});
  if (!options) return usageError(command, options.error(), context);
  const QStringList words = options->words();
  const QString what = words.value(0);
  const bool json = options->has("json"_L1);
  if (what == "show"_L1 && words.size() == 1) return show(context, json);
  if (json) return usageError(command, u"only 'show' takes --json"_s, context);
  if (what == "set"_L1 && words.size() != 3) return wrongSetting(u"name a setting and its value"_s, context);
  if (what == "set"_L1) return told(set(words[1], words[2], context));
  if (what == "service"_L1) return told(runServiceConfig(words.mid(1), context));
  return usageError(command, u"say what to do: show, set or service"_s, context);
}
