#pragma once

#include <QColor>
#include <QString>

#include <optional>
#include <vector>

/// One entry of the fixed catalogue of command icons: a monogram on a brand colour.
struct CommandIcon {
  /// Lower case; the value stored with a command.
  QString id;
  QString name;
  /// Two characters, different for each entry.
  QString monogram;
  /// The tile's colour, sRGB; dark enough for white text (contrast 4.5 : 1 or more).
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
