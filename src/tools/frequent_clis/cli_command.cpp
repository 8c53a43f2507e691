#include "tools/frequent_clis/cli_command.h"

#include <array>

#include "base/json_reader.h"

using namespace Qt::StringLiterals;

namespace {

constexpr std::array kRequiredKeys = {"id"_L1, "title"_L1, "command"_L1, "pressReturn"_L1};

std::optional<QUuid> uuid(const QString& text) {
  const QUuid id = QUuid::fromString(text);
  const bool exact = text.compare(id.toString(QUuid::WithoutBraces), Qt::CaseInsensitive) == 0;
  return exact ? std::optional(id) : std::nullopt;
}

}  // namespace

const CommandIcon& CLICommand::shownIcon() const {
  // Asked at every painting: the beginning of a huge text is enough until the icon is stored.
  constexpr qsizetype kLookedAt = 1024;
  return CommandIcon::find(icon ? *icon : CommandIcon::infer(command.left(kLookedAt)));
}

bool decode(const QJsonValue& value, CLICommand& out) {
  const QJsonObject object = value.toObject();
  for (const auto key : kRequiredKeys)
    if (object.value(key).isNull() || object.value(key).isUndefined()) return false;

  CLICommand command;
  QString id;
  QString icon;
  JsonReader reader(object);
  reader.read("id"_L1, id);
  reader.read("title"_L1, command.title);
  reader.read("command"_L1, command.command);
  reader.read("pressReturn"_L1, command.pressReturn);
  reader.read("icon"_L1, icon);
  const auto identity = uuid(id);
  if (reader.hasMisfits() || !identity) return false;
  command.id = *identity;
  if (object.value("icon"_L1).isString()) command.icon = icon;
  out = std::move(command);
  return true;
}

QJsonObject encode(const CLICommand& command) {
  QJsonObject object{{"id"_L1, command.id.toString(QUuid::WithoutBraces).toUpper()},
                     {"title"_L1, command.title},
                     {"command"_L1, command.command},
                     {"pressReturn"_L1, command.pressReturn}};
  if (command.icon) object.insert("icon"_L1, *command.icon);
  return object;
}
