#pragma once

#include <QString>

/// Why a file could not be read or written. `description()` is the only text made from it.
struct FileError {
  QString path;
  QString reason;

  QString description() const { return path + QStringLiteral(": ") + reason; }
};
