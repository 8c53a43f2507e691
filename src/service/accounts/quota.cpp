#include "service/accounts/quota.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <tuple>

#include "service/accounts/secret.h"

using namespace Qt::StringLiterals;

namespace {

/// Longer than any provider is waited for.
constexpr qint64 kReservationSeconds = 15 * 60;

QString monthOf(const QDateTime& now) { return now.toUTC().toString(u"yyyy-MM"_s); }

/// What is allowed: no row, nothing.
Stored<std::optional<qint64>> allowance(Connection& connection, const QString& plan, const QString& metric) {
  const auto rows = connection.run(u"SELECT allowance FROM allowances WHERE plan = ? AND metric = ?"_s, {plan, metric});
  if (!rows) return std::unexpected(rows.error());
  if (rows->empty()) return std::optional<qint64>(0);
  const QVariant& value = rows->front().front();
  return value.isNull() ? std::nullopt : std::optional(value.toLongLong());
}

/// Makes the counter's row and holds it until the transaction ends, so that no two count at once.
Stored<qint64> lockCounter(Connection& connection, const QVariantList& counter) {
  const auto rows = connection.run(
      u"INSERT INTO quota_used (owner, month, metric, used) VALUES (?, ?, ?, 0) "
      "ON CONFLICT (owner, month, metric) DO UPDATE SET used = quota_used.used RETURNING used"_s,
      counter);
  if (!rows) return std::unexpected(rows.error());
  return rows->front().front().toLongLong();
}

Stored<qint64> reserved(Connection& connection, const QVariantList& counter, qint64 now) {
  const auto rows = connection.run(
      u"SELECT count(*) FROM quota_reserved WHERE owner = ? AND month = ? AND metric = ? AND expires_at > ?"_s,
      counter + QVariantList{now});
  if (!rows) return std::unexpected(rows.error());
  return rows->front().front().toLongLong();
}

/// Sets the standing; whether the unit was reserved.
Stored<bool> tryReserve(Connection& connection, const QString& id, const QVariantList& counter, Standing& standing,
                        qint64 now) {
  const auto limit = allowance(connection, standing.plan, standing.metric);
  if (!limit) return std::unexpected(limit.error());
  const auto used = lockCounter(connection, counter);
  if (!used) return std::unexpected(used.error());
  const auto taken = reserved(connection, counter, now);
  if (!taken) return std::unexpected(taken.error());
  standing.limit = *limit;
  standing.used = *used;
  if (*limit && *used + *taken >= **limit) return false;
  const auto done =
      connection.run(u"INSERT INTO quota_reserved (id, owner, month, metric, expires_at) VALUES (?, ?, ?, ?, ?)"_s,
                     QVariantList{id} + counter + QVariantList{now + kReservationSeconds});
  if (!done) return std::unexpected(done.error());
  return true;
}

}  // namespace

void Standing::describe(Response& response) const {
  if (!limit) return;
  const qint64 remaining = std::max<qint64>(*limit - used, 0);
  response.add("X-Quota-Limit", QByteArray::number(*limit));
  response.add("X-Quota-Remaining", QByteArray::number(remaining));
  response.add("X-Quota-Reset", resetsAt.toString(Qt::ISODate).toLatin1());
}

Response Standing::refusal() const {
  const QJsonObject body{{u"metric"_s, metric},
                         {u"plan"_s, plan},
                         {u"used"_s, used},
                         {u"limit"_s, limit.value_or(0)},
                         {u"resetsAt"_s, resetsAt.toString(Qt::ISODate)}};
  Response response{.status = 402, .body = QJsonDocument(body).toJson(QJsonDocument::Compact)};
  describe(response);
  return response;
}

QDateTime Quota::nextReset(const QDateTime& now) {
  const QDate today = now.toUTC().date();
  return {QDate(today.year(), today.month(), 1).addMonths(1), QTime(0, 0), Qt::UTC};
}

std::expected<Quota::Reservation, Quota::Refused> Quota::reserve(const Caller& caller, const QString& metric,
                                                                 const QDateTime& now) {
  const QString id = QString::fromLatin1(makeSecret());
  const QVariantList counter{caller.owner, monthOf(now), metric};
  Standing standing{.metric = metric, .plan = caller.plan, .limit = {}, .resetsAt = nextReset(now)};
  bool isReserved = false;
  const Stored<void> written = writes_.run([&](Connection& connection) -> Stored<void> {
    const auto tried = tryReserve(connection, id, counter, standing, now.toSecsSinceEpoch());
    if (!tried) return std::unexpected(tried.error());
    isReserved = *tried;
    return {};
  });
  if (!written) return std::unexpected(written.error());
  if (!isReserved) return std::unexpected(standing);
  return Reservation(*this, id, standing);
}

Stored<void> Quota::release(const QString& id, Standing* counted) {
  return writes_.run([&](Connection& connection) -> Stored<void> {
    const auto rows = connection.run(u"DELETE FROM quota_reserved WHERE id = ? RETURNING owner, month, metric"_s, {id});
    if (!rows) return std::unexpected(rows.error());
    if (!counted || rows->empty()) return {};
    const auto used = connection.run(
        u"UPDATE quota_used SET used = used + 1 WHERE owner = ? AND month = ? AND metric = ? RETURNING used"_s,
        rows->front());
    if (!used) return std::unexpected(used.error());
    if (!used->empty()) counted->used = used->front().front().toLongLong();
    return {};
  });
}

Stored<std::vector<Standing>> Quota::standings(const Caller& caller, const QDateTime& now) const {
  const auto rows = database_.connection().run(
      u"SELECT allowances.metric, allowance, used FROM allowances LEFT JOIN quota_used "
      "ON quota_used.metric = allowances.metric AND owner = ? AND month = ? WHERE plan = ?"_s,
      {caller.owner, monthOf(now), caller.plan});
  if (!rows) return std::unexpected(rows.error());
  std::vector<Standing> found;
  for (const QVariantList& row : *rows)
    found.push_back({.metric = row[0].toString(),
                     .plan = caller.plan,
                     .used = row[2].toLongLong(),
                     .limit = row[1].isNull() ? std::nullopt : std::optional(row[1].toLongLong()),
                     .resetsAt = nextReset(now)});
  return found;
}

Quota::Reservation::Reservation(Quota& quota, QString id, Standing standing)
    : quota_(&quota), id_(std::move(id)), standing_(std::move(standing)) {}

Quota::Reservation::~Reservation() {
  // One that was moved from has no id; one that is not released here is forgotten after a while.
  if (!id_.isEmpty()) std::ignore = quota_->release(id_, nullptr);
}

Stored<Standing> Quota::Reservation::commit() {
  const auto released = quota_->release(std::exchange(id_, {}), &standing_);
  if (!released) return std::unexpected(released.error());
  return standing_;
}
