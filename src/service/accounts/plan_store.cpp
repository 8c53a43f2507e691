#include "service/accounts/plan_store.h"

using namespace Qt::StringLiterals;

namespace plans {

Stored<std::vector<Plan>> list(Connection& connection) {
  const auto rows = connection.run(
      u"SELECT plans.name, metric, allowance FROM plans LEFT JOIN allowances ON plan = plans.name "
      "ORDER BY plans.name, metric"_s);
  if (!rows) return std::unexpected(rows.error());
  std::vector<Plan> found;
  for (const QVariantList& row : *rows) {
    if (found.empty() || found.back().name != row[0].toString()) found.push_back({row[0].toString(), {}});
    if (row[1].isNull()) continue;
    const auto allowance = row[2].isNull() ? std::nullopt : std::optional(row[2].toLongLong());
    found.back().allowances.insert(row[1].toString(), allowance);
  }
  return found;
}

Stored<void> set(Connection& connection, const Plan& plan) {
  const auto made = connection.run(u"INSERT INTO plans (name) VALUES (?) ON CONFLICT DO NOTHING"_s, {plan.name});
  if (!made) return std::unexpected(made.error());
  for (const auto& [metric, allowance] : plan.allowances.asKeyValueRange()) {
    const QVariant value = allowance ? QVariant(*allowance) : QVariant(QMetaType::fromType<qint64>());
    const auto set = connection.run(
        u"INSERT INTO allowances (plan, metric, allowance) VALUES (?, ?, ?) "
        "ON CONFLICT (plan, metric) DO UPDATE SET allowance = excluded.allowance"_s,
        {plan.name, metric, value});
    if (!set) return std::unexpected(set.error());
  }
  return {};
}

}  // namespace plans
