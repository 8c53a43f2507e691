#pragma once

#include <QJsonObject>

#include <functional>

#include "service/storage/connection.h"

/// What was sent to the operator, one JSON object after another, oldest first.
namespace exporting {

using Line = std::function<bool(const QJsonObject&)>;

/// `line` returns false to stop.
Stored<void> events(Connection& connection, const Line& line);
/// `kind`: "feedback" or "suggestion". `blobFolder`: where the images lie, for their paths.
Stored<void> reports(Connection& connection, const QString& kind, const QString& blobFolder, const Line& line);

}  // namespace exporting
