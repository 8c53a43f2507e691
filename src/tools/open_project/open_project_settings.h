#pragma once

#include "core/settings/store.h"

/// How projects are opened, "open-project.json".
struct OpenProjectSettings {
  static constexpr const char* kStoreName = "OpenProjectStore";

  /// A command template; empty means the first preset of the system.
  QString command;
  /// Put the resume command of the folder's last session on the clipboard.
  bool copyResume = false;
  /// Choose among the presets each time.
  bool askForCommand = false;
  bool autoRunAgent = false;
  QString agentCommand = QStringLiteral("claude");
  /// Add the agent's flag that skips its permission questions.
  bool agentYolo = false;

  bool operator==(const OpenProjectSettings&) const = default;
  void read(JsonReader& reader);
  void write(QJsonObject& object) const;

  /// The command line of the agent to start; empty for none.
  QString effectiveAgentCommand() const;
};

using OpenProjectStore = Store<OpenProjectSettings>;

/// The flag with which an agent asks for no permissions, found by its program's name; empty when none is known.
QString yoloFlag(const QString& agentCommand);
/// The command with that flag, unless it has it already.
QString withYoloFlag(const QString& agentCommand);
