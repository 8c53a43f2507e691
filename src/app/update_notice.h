#pragma once

#include <QString>

#include <optional>

class QSettings;

/// Notices that this is the first run of another version, and forgets it at once: each version is announced one time.
/// The very first run has nothing to announce. Updates themselves are the platform's own.
///
/// Returns the earlier version; kept in the user defaults as "updates.lastVersion".
std::optional<QString> takeUpdatedFrom(QSettings& defaults, const QString& currentVersion);
