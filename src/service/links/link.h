#pragma once

#include <QByteArray>
#include <QString>

/// What a link points to. Times are seconds since 1970.
struct Link {
  QString id;
  QString blob;
  qint64 size = 0;
  QString name;
  /// As it is served.
  QByteArray type;
  /// Shown by a browser in place; else saved as a file.
  bool isShown = false;
  QString owner;
  qint64 createdAt = 0;
  qint64 expiresAt = 0;
};
