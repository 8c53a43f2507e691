#pragma once

#include <QMap>

#include <optional>

#include "service/storage/connection.h"

/// What a plan allows in a month: by metric, endless when it has no number. A metric that is not there is not allowed.
struct Plan {
  QString name;
  QMap<QString, std::optional<qint64>> allowances;
};

namespace plans {

Stored<std::vector<Plan>> list(Connection& connection);
/// Changes the named allowances; makes the plan if there is none.
Stored<void> set(Connection& connection, const Plan& plan);

}  // namespace plans
