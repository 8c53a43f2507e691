#pragma once

#include <QJsonObject>
#include <QString>
#include <QUuid>

#include <optional>

#include "tools/frequent_clis/command_icon.h"

/// One saved command.
struct CLICommand {
  /// Stable across edits and reordering.
  QUuid id;
  /// Label in the palette and the editor.
  QString title;
  /// The exact text that is typed.
  QString command;
  /// After typing, Return is pressed.
  bool pressReturn = false;
  /// Id of a CommandIcon; none: not chosen yet.
  std::optional<QString> icon;

  bool operator==(const CLICommand&) const = default;

  /// What its tile shows: the icon, or while none is chosen the one that its text suggests.
  const CommandIcon& shownIcon() const;
};

/// False, with `out` left as it is, unless the value is an object with every key but "icon" in its right type.
bool decode(const QJsonValue& value, CLICommand& out);
QJsonObject encode(const CLICommand& command);
