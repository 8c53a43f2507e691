#pragma once

#include <QColor>
#include <QJsonValue>
#include <QString>
#include <QUuid>

#include <optional>
#include <span>
#include <vector>

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
};

bool decode(const QJsonValue& value, CLICommand& out);
QJsonValue encode(const CLICommand& command);

/// One entry of the fixed catalogue of command icons.
struct CommandIcon {
  /// Lower case; the value stored with a command.
  QString id;
  QString name;
  /// The tile's brand colour, sRGB.
  QColor color;

  bool operator==(const CommandIcon&) const = default;

  /// Favourites in their fixed order, then the others by name: the order of the icon picker.
  static const std::vector<CommandIcon>& all();
  /// The fallback; not part of `all()` and never inferred.
  static const CommandIcon& terminal();
  /// The entry with that id; `terminal()` for an unknown or absent one.
  static const CommandIcon& find(const std::optional<QString>& id);
  /// The id of the first icon of `all()` that is a word of the command text; "terminal" when none is.
  static QString infer(const QString& command);
};
