#pragma once

#include <QJsonDocument>
#include <QString>

#include <optional>

/// Whether a file of Vantle's folder may hold a credential, by its name.
enum class Credentials {
  none,
  /// In members that can be emptied.
  known,
  /// An unreadable or half-written copy of such a file, or one that is nothing else.
  unknown,
};

Credentials credentialsIn(const QString& fileName);

/// The settings in `path` with every credential replaced by an empty text; none when they cannot be understood.
std::optional<QJsonDocument> readWithoutCredentials(const QString& path);
