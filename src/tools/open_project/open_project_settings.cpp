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

struct Switch {
  QLatin1StringView key;
  bool OpenProjectSettings::* value;
};

constexpr std::array kSwitches = {
    Switch{"copyResume"_L1, &OpenProjectSettings::copyResume},
    Switch{"askForCommand"_L1, &OpenProjectSettings::askForCommand},
    Switch{"autoRunAgent"_L1, &OpenProjectSettings::autoRunAgent},
    Switch{"agentYolo"_L1, &OpenProjectSettings::agentYolo},
};

QStringList words(const QString& command) { return command.trimmed().split(u' ', Qt::SkipEmptyParts); }

}  // namespace

void OpenProjectSettings::read(JsonReader& reader) {
  for (const Switch& entry : kSwitches) reader.read(entry.key, this->*entry.value);
  reader.read("command"_L1, command);
  reader.read("agentCommand"_L1, agentCommand);
}

void OpenProjectSettings::write(QJsonObject& object) const {
  for (const Switch& entry : kSwitches) object.insert(entry.key, this->*entry.value);
  if (!command.isEmpty()) object.insert("command"_L1, command);
  object.insert("agentCommand"_L1, agentCommand);
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
