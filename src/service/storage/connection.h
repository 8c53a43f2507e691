#pragma once

#include <QHash>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QVariant>

#include <memory>
#include <vector>

#include "service/storage/storage_error.h"

struct DatabaseLocation;

/// One thread's connection to the database, SQLite or PostgreSQL by the same statements. Opened at its first use, and
/// anew at the next one after it was lost.
class Connection {
 public:
  using Rows = std::vector<QVariantList>;

  explicit Connection(const DatabaseLocation& location);
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  /// Placeholders are "?". All rows are read at once: ask for a bounded number.
  Stored<Rows> run(const QString& sql, const QVariantList& values = {});

  /// Takes the right to write at once, so that no transaction fails for want of it later.
  Stored<void> begin();
  Stored<void> commit();
  void rollback();

  bool isSqlite() const { return isSqlite_; }

 private:
  Stored<void> ensureOpen();
  Stored<std::shared_ptr<QSqlQuery>> prepared(const QString& sql);
  StorageError lost(const QSqlError& error);
  Stored<Rows> attempt(const QString& sql, const QVariantList& values);

  QString name_;
  bool isSqlite_;
  QSqlDatabase database_;
  bool isInTransaction_ = false;
  QHash<QString, std::shared_ptr<QSqlQuery>> prepared_;
};
