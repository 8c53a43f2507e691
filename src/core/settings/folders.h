#pragma once

#include <QString>

/// Where the user's data lives. A plain value, so that a test points it at a folder of its own.
struct Folders {
  /// The folder that holds every application's data ("Application Support").
  QString applicationSupport;

  /// ~/Library/Application Support on macOS, $XDG_DATA_HOME on Linux.
  static Folders standard();

  /// Vantle's own folder.
  QString vantle() const { return applicationSupport + QStringLiteral("/Vantle"); }
  /// A file below Vantle's folder.
  QString file(const QString& relativePath) const { return vantle() + QLatin1Char('/') + relativePath; }

  /// Moves the settings folder of an earlier name into place when there is none of today's; a failed move is ignored.
  void migrateLegacyFolder() const;
};
