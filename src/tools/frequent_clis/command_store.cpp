#include "tools/frequent_clis/command_store.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QSet>

#include <algorithm>

#include "base/folder.h"
#include "base/json_reader.h"
#include "base/logging.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto kFile = "FrequentCLIs/commands.json"_L1;
constexpr auto kLegacyFile = "commands.json"_L1;

std::vector<CLICommand> defaultCommands() {
  return {
      {QUuid::createUuid(), u"Claude — skip permissions"_s, u"claude --dangerously-skip-permissions"_s, false,
       u"claude"_s},
      {QUuid::createUuid(), u"Codex — YOLO"_s, u"codex --yolo"_s, false, u"codex"_s},
  };
}

std::expected<void, FileError> moveFile(const QString& from, const QString& to) {
  if (!makePrivateFolder(QFileInfo(to).path()))
    return std::unexpected(FileError{to, u"the folder cannot be created"_s});
  QFile file(from);
  if (!file.rename(to)) return std::unexpected(FileError{from, file.errorString()});
  return {};
}

/// The keys of a stored command that its record does not know.
QJsonObject unknownKeys(QJsonObject stored) {
  for (const auto key : {"id"_L1, "title"_L1, "command"_L1, "pressReturn"_L1, "icon"_L1}) stored.remove(key);
  return stored;
}

}  // namespace

CommandStore::CommandStore(const Folders& folders, Clock& clock) : file_(folders.file(kFile)), clock_(clock) {
  migrateLegacyFileIfNeeded(folders);
  load();
}

const CLICommand* CommandStore::find(const QUuid& id) const {
  const auto found = std::ranges::find(commands_, id, &CLICommand::id);
  return found == commands_.end() ? nullptr : &*found;
}

void CommandStore::setCommands(std::vector<CLICommand> commands) {
  scheduleSave();
  if (commands == commands_) return;
  commands_ = std::move(commands);
  Q_EMIT changed();
}

QUuid CommandStore::add() {
  auto commands = commands_;
  const QUuid id = QUuid::createUuid();
  commands.push_back({id, u"New Command"_s, {}, false, std::nullopt});
  setCommands(std::move(commands));
  return id;
}

void CommandStore::replace(const CLICommand& command) {
  auto commands = commands_;
  const auto found = std::ranges::find(commands, command.id, &CLICommand::id);
  if (found == commands.end()) return;
  *found = command;
  setCommands(std::move(commands));
}

void CommandStore::remove(const QUuid& id) {
  auto commands = commands_;
  if (std::erase_if(commands, [&](const CLICommand& command) { return command.id == id; }) > 0)
    setCommands(std::move(commands));
}

void CommandStore::move(const QUuid& id, int index) {
  auto commands = commands_;
  const auto found = std::ranges::find(commands, id, &CLICommand::id);
  if (found == commands.end()) return;
  CLICommand moved = std::move(*found);
  commands.erase(found);
  commands.insert(commands.begin() + std::clamp(index, 0, static_cast<int>(commands.size())), std::move(moved));
  setCommands(std::move(commands));
}

void CommandStore::migrateLegacyFileIfNeeded(const Folders& folders) {
  const QString legacy = folders.file(kLegacyFile);
  if (QFileInfo::exists(file_.path()) || !QFileInfo(legacy).isFile()) return;
  if (const auto moved = moveFile(legacy, file_.path()); !moved)
    qCWarning(lcSettings).noquote() << "CommandStore migration failed:" << moved.error().description();
}

void CommandStore::load() {
  auto commands = readCommands();
  commands_ = commands && !commands->empty() ? std::move(*commands) : defaultCommands();
  for (CLICommand& command : commands_)
    if (!command.icon) command.icon = CommandIcon::infer(command.command);
  scheduleSave();
}

/// None when there is no file or not every command of it can be read; the file is then kept.
std::optional<std::vector<CLICommand>> CommandStore::readCommands() {
  const auto document = file_.read();
  if (!document || document->isNull()) return std::nullopt;
  auto commands = document->isArray() ? decodeCommands(document->array()) : std::nullopt;
  if (!commands) file_.keepBeforeOverwriting();
  return commands;
}

std::optional<std::vector<CLICommand>> CommandStore::decodeCommands(const QJsonArray& array) {
  std::vector<CLICommand> commands;
  QSet<QUuid> seen;
  for (const QJsonValue& value : array) {
    CLICommand command;
    if (!decode(value, command)) return std::nullopt;
    // Two commands under one id could not be told apart when one of them is edited: the later one gets its own.
    if (command.id.isNull() || seen.contains(command.id)) command.id = QUuid::createUuid();
    seen.insert(command.id);
    // JSON is written as UTF-8, which has no place for half a surrogate pair.
    if (!command.title.isValidUtf16() || !command.command.isValidUtf16()) file_.keepBeforeOverwriting();
    const QJsonObject unknown = unknownKeys(value.toObject());
    if (!unknown.isEmpty()) foreign_.insert(command.id, unknown);
    commands.push_back(std::move(command));
  }
  return commands;
}

QJsonObject CommandStore::encodeWhole(const CLICommand& command) const {
  QJsonObject object = foreign_.value(command.id);
  const QJsonObject known = encode(command);
  for (auto it = known.begin(); it != known.end(); ++it) object.insert(it.key(), it.value());
  return object;
}

void CommandStore::scheduleSave() {
  saveTask_ = Job::start();
  clock_.after(kSaveDelay, saveTask_, [this] { save(); });
}

void CommandStore::save() {
  saveTask_.cancel();
  QJsonArray array;
  for (const CLICommand& command : commands_) array.append(encodeWhole(command));
  if (const auto saved = file_.write(QJsonDocument(array)); !saved)
    qCWarning(lcSettings).noquote() << "CommandStore save failed:" << saved.error().description();
}
