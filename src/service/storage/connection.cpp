#include "service/storage/connection.h"

#include <QSqlError>
#include <QSqlRecord>

#include <array>
#include <atomic>
#include <tuple>

#include "service/storage/database_location.h"

using namespace Qt::StringLiterals;

namespace {

std::atomic<quint64> made = 0;

/// What SQLite is told once a connection is open. FULL: what is acknowledged survives a power cut.
constexpr std::array kSqliteSetup = {"PRAGMA journal_mode = WAL"_L1, "PRAGMA synchronous = FULL"_L1,
                                     "PRAGMA foreign_keys = ON"_L1};
/// The primary codes below SQLite's extended ones.
constexpr int kSqliteIoError = 10;
constexpr int kSqliteFull = 13;
constexpr int kSqliteConstraint = 19;

StorageError::Reason sqliteReason(const QString& code) {
  switch (code.toInt() & 0xff) {
    case kSqliteFull:
    // A write that the system refuses, such as one above the limit on the size of files.
    case kSqliteIoError:
      return StorageError::Reason::full;
    case kSqliteConstraint:
      return StorageError::Reason::conflict;
    default:
      return StorageError::Reason::unavailable;
  }
}

StorageError::Reason postgresReason(const QString& code) {
  if (code == "53100"_L1) return StorageError::Reason::full;
  // Values that it does not take are as much the writer's fault as those that are there already.
  return code.startsWith("23"_L1) || code.startsWith("22"_L1) ? StorageError::Reason::conflict
                                                              : StorageError::Reason::unavailable;
}

Connection::Rows read(QSqlQuery& query) {
  Connection::Rows rows;
  const int columns = query.record().count();
  while (query.next()) {
    QVariantList& row = rows.emplace_back();
    for (int column = 0; column < columns; ++column) row.append(query.value(column));
  }
  // A statement that is left open keeps SQLite's log from being trimmed.
  query.finish();
  return rows;
}

}  // namespace

Connection::Connection(const DatabaseLocation& location)
    : name_(u"vantle-%1"_s.arg(++made)), isSqlite_(location.driver == "QSQLITE"_L1) {
  database_ = QSqlDatabase::addDatabase(location.driver, name_);
  database_.setDatabaseName(location.name);
  database_.setHostName(location.host);
  database_.setPort(location.port);
  database_.setUserName(location.user);
  database_.setPassword(location.password);
  database_.setConnectOptions(location.options);
}

Connection::~Connection() {
  prepared_.clear();
  database_ = QSqlDatabase();
  QSqlDatabase::removeDatabase(name_);
}

Stored<void> Connection::ensureOpen() {
  if (database_.isOpen()) return {};
  if (!database_.open())
    return std::unexpected(StorageError{StorageError::Reason::unavailable, database_.lastError().text()});
  if (!isSqlite_) return {};
  for (const QLatin1StringView setup : kSqliteSetup) {
    QSqlQuery query(database_);
    if (!query.exec(QString(setup))) return std::unexpected(lost(query.lastError()));
  }
  return {};
}

StorageError Connection::lost(const QSqlError& error) {
  const QString code = error.nativeErrorCode();
  const auto reason = isSqlite_ ? sqliteReason(code) : postgresReason(code);
  // A PostgreSQL that went away tells no code: the next use opens a connection anew.
  const bool isGone = !isSqlite_ && (code.isEmpty() || code.startsWith("57"_L1) || code.startsWith("08"_L1));
  if (isGone) {
    prepared_.clear();
    database_.close();
  }
  return {reason, error.text()};
}

Stored<std::shared_ptr<QSqlQuery>> Connection::prepared(const QString& sql) {
  if (const auto known = prepared_.constFind(sql); known != prepared_.constEnd()) return *known;
  auto query = std::make_shared<QSqlQuery>(database_);
  query->setForwardOnly(true);
  if (!query->prepare(sql)) return std::unexpected(lost(query->lastError()));
  return *prepared_.insert(sql, query);
}

Stored<Connection::Rows> Connection::run(const QString& sql, const QVariantList& values) {
  auto result = attempt(sql, values);
  // The server was started anew since the last use: that is noticed by one that fails.
  const bool wasLost = !result && !database_.isOpen() && !isInTransaction_;
  return wasLost ? attempt(sql, values) : result;
}

Stored<Connection::Rows> Connection::attempt(const QString& sql, const QVariantList& values) {
  if (const auto open = ensureOpen(); !open) return std::unexpected(open.error());
  if (values.isEmpty()) {
    // PostgreSQL prepares no statement that changes tables.
    QSqlQuery query(database_);
    query.setForwardOnly(true);
    if (!query.exec(sql)) return std::unexpected(lost(query.lastError()));
    return read(query);
  }
  const auto found = prepared(sql);
  if (!found) return std::unexpected(found.error());
  // Shared: losing the connection empties the list of prepared ones.
  const std::shared_ptr<QSqlQuery>& query = *found;
  for (qsizetype i = 0; i < values.size(); ++i) query->bindValue(static_cast<int>(i), values[i]);
  if (query->exec()) return read(*query);
  const QSqlError error = query->lastError();
  query->finish();
  return std::unexpected(lost(error));
}

Stored<void> Connection::begin() {
  const auto begun = run(isSqlite_ ? u"BEGIN IMMEDIATE"_s : u"BEGIN"_s);
  isInTransaction_ = begun.has_value();
  if (!begun) return std::unexpected(begun.error());
  return {};
}

Stored<void> Connection::commit() {
  const auto committed = run(u"COMMIT"_s);
  if (!committed) return std::unexpected(committed.error());
  isInTransaction_ = false;
  return {};
}

void Connection::rollback() {
  if (database_.isOpen()) std::ignore = run(u"ROLLBACK"_s);
  isInTransaction_ = false;
}
