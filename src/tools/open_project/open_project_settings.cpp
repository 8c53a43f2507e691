#include "tools/open_project/open_project_settings.h"

#include <QStringList>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

struct AgentFlag {
  QLatin1StringView program;
  QLatin1StringView flag;
};

constexpr std::array kAgentFlags = {
    AgentFlag{"claude"_L1, "--dangerously-skip-permissions"_L1},
    AgentFlag{"codex"_L1, "--yolo"_L1},
    AgentFlag{"gemini"_L1, "--yolo"_L1},
};

QStringList words(const QString& command) { return command.trimmed().split(u' ', Qt::SkipEmptyParts); }

}  // namespace

void OpenProjectSettings::read(JsonReader& reader) {
  reader.read("command"_L1, command);
  reader.read("copyResume"_L1, copyResume);
  reader.read("askForCommand"_L1, askForCommand);
  reader.read("autoRunAgent"_L1, autoRunAgent);
  reader.read("agentCommand"_L1, agentCommand);
  reader.read("agentYolo"_L1, agentYolo);
}

void OpenProjectSettings::write(QJsonObject& object) const {
  if (!command.isEmpty()) object.insert("command"_L1, command);
  object.insert("copyResume"_L1, copyResume);
  object.insert("askForCommand"_L1, askForCommand);
  object.insert("autoRunAgent"_L1, autoRunAgent);
  object.insert("agentCommand"_L1, agentCommand);
  object.insert("agentYolo"_L1, agentYolo);
}

QString OpenProjectSettings::effectiveAgentCommand() const {
  const QString trimmed = agentCommand.trimmed();
  if (!autoRunAgent || trimmed.isEmpty()) return {};
  return agentYolo ? withYoloFlag(trimmed) : trimmed;
}

QString yoloFlag(const QString& agentCommand) {
  const QString program = words(agentCommand).value(0).section(u'/', -1);
  const auto known = std::ranges::find(kAgentFlags, program, &AgentFlag::program);
  return known == kAgentFlags.end() ? QString() : QString(known->flag);
}

QString withYoloFlag(const QString& agentCommand) {
  const QString flag = yoloFlag(agentCommand);
  return flag.isEmpty() || words(agentCommand).contains(flag) ? agentCommand : agentCommand + u' ' + flag;
}
