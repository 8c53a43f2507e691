#include "service/storage/schema.h"

#include <array>
#include <initializer_list>
#include <span>

using namespace Qt::StringLiterals;

namespace {

/// "{id}" stands for a number that the database gives. Times are seconds since 1970, UTC.
constexpr std::array kFirst = {
    "CREATE TABLE plans (name TEXT PRIMARY KEY)"_L1,
    // An allowance of NULL is endless; a metric without a row is not allowed.
    "CREATE TABLE allowances (plan TEXT NOT NULL REFERENCES plans(name), metric TEXT NOT NULL, allowance BIGINT, "
    "PRIMARY KEY (plan, metric))"_L1,
    "CREATE TABLE tokens (id {id}, name TEXT NOT NULL UNIQUE, kind TEXT NOT NULL, plan TEXT NOT NULL REFERENCES "
    "plans(name), digest TEXT NOT NULL UNIQUE, created_at BIGINT NOT NULL, revoked_at BIGINT)"_L1,
    "CREATE TABLE links (id TEXT PRIMARY KEY, blob TEXT NOT NULL, size BIGINT NOT NULL, name TEXT NOT NULL, type TEXT "
    "NOT NULL, shown SMALLINT NOT NULL, owner TEXT NOT NULL, created_at BIGINT NOT NULL, expires_at BIGINT NOT NULL)"_L1,
    "CREATE INDEX links_blob ON links(blob)"_L1,
    "CREATE INDEX links_expiry ON links(expires_at)"_L1,
    "CREATE TABLE quota_used (owner TEXT NOT NULL, month TEXT NOT NULL, metric TEXT NOT NULL, used BIGINT NOT NULL, "
    "PRIMARY KEY (owner, month, metric))"_L1,
    "CREATE TABLE quota_reserved (id TEXT PRIMARY KEY, owner TEXT NOT NULL, month TEXT NOT NULL, metric TEXT NOT NULL, "
    "expires_at BIGINT NOT NULL)"_L1,
    "CREATE INDEX quota_reserved_counter ON quota_reserved(owner, month, metric)"_L1,
    "CREATE TABLE events (id {id}, received_at BIGINT NOT NULL, body TEXT NOT NULL)"_L1,
    "CREATE TABLE reports (id {id}, kind TEXT NOT NULL, received_at BIGINT NOT NULL, owner TEXT NOT NULL, person TEXT, "
    "body TEXT NOT NULL)"_L1,
    "CREATE TABLE report_images (report BIGINT NOT NULL REFERENCES reports(id), position SMALLINT NOT NULL, blob TEXT "
    "NOT NULL, size BIGINT NOT NULL, name TEXT NOT NULL, type TEXT NOT NULL, PRIMARY KEY (report, position))"_L1,
    "CREATE INDEX report_images_blob ON report_images(blob)"_L1,
    "INSERT INTO plans (name) VALUES ('embedded'), ('self-hosted'), ('free'), ('paid')"_L1,
    "INSERT INTO allowances (plan, metric, allowance) VALUES "
    "('embedded', 'answers', NULL), ('embedded', 'text', NULL), ('embedded', 'image_answers', NULL), "
    "('embedded', 'image_generate', NULL), ('self-hosted', 'answers', NULL), ('self-hosted', 'text', NULL), "
    "('self-hosted', 'image_answers', NULL), ('self-hosted', 'image_generate', NULL), "
    "('free', 'answers', 50), ('free', 'text', 100), ('free', 'image_answers', 20), ('free', 'image_generate', 5), "
    "('paid', 'answers', 1000), ('paid', 'text', 2000), ('paid', 'image_answers', 500), ('paid', 'image_generate', 100)"_L1,
};

using Step = std::span<const QLatin1StringView>;
constexpr std::array kSteps = {Step(kFirst)};

/// Any number that no other program takes.
constexpr auto kAdvisoryLock = "SELECT pg_advisory_xact_lock(7386102451)"_L1;

QString forDriver(QLatin1StringView statement, bool isSqlite) {
  return QString(statement).replace("{id}"_L1, isSqlite ? "INTEGER PRIMARY KEY AUTOINCREMENT"_L1
                                                        : "BIGINT GENERATED ALWAYS AS IDENTITY PRIMARY KEY"_L1);
}

Stored<int> version(Connection& connection) {
  const auto made = connection.run(u"CREATE TABLE IF NOT EXISTS schema_version (version INTEGER NOT NULL)"_s);
  if (!made) return std::unexpected(made.error());
  const auto rows = connection.run(u"SELECT max(version) FROM schema_version"_s);
  if (!rows) return std::unexpected(rows.error());
  return rows->empty() ? 0 : rows->front().front().toInt();
}

Stored<void> take(Connection& connection, int from) {
  for (std::size_t step = static_cast<std::size_t>(from); step < kSteps.size(); ++step) {
    for (const QLatin1StringView statement : kSteps[step])
      if (const auto done = connection.run(forDriver(statement, connection.isSqlite())); !done)
        return std::unexpected(done.error());
    const auto noted =
        connection.run(u"INSERT INTO schema_version (version) VALUES (?)"_s, {static_cast<int>(step) + 1});
    if (!noted) return std::unexpected(noted.error());
  }
  return {};
}

/// Within a transaction.
Stored<int> raise(Connection& connection) {
  if (!connection.isSqlite())
    if (const auto locked = connection.run(QString(kAdvisoryLock)); !locked) return std::unexpected(locked.error());
  const auto found = version(connection);
  if (!found || *found >= Schema::newest()) return found;
  const auto taken = take(connection, *found);
  if (!taken) return std::unexpected(taken.error());
  return Schema::newest();
}

}  // namespace

int Schema::newest() { return static_cast<int>(kSteps.size()); }

std::expected<void, QString> Schema::migrate(Connection& connection) {
  const auto begun = connection.begin();
  if (!begun) return std::unexpected(u"the database cannot be used: "_s + begun.error().detail);
  const auto reached = raise(connection);
  const auto kept = reached ? connection.commit() : std::unexpected(reached.error());
  if (!kept) {
    connection.rollback();
    return std::unexpected(u"the database cannot be prepared: "_s + kept.error().detail);
  }
  if (*reached > newest()) return std::unexpected(u"the database was made by a newer vantle-service"_s);
  return {};
}
