#include "service/maintenance.h"

#include <QDateTime>

#include <condition_variable>

#include "service/log.h"

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

constexpr auto kInterval = 1h;

Stored<void> forget(Connection& connection, qint64 now) {
  Stored<void> done = connection.begin();
  if (!done) return done;
  done = LinkStore::forget(connection, now);
  if (done) {
    const auto reservations = connection.run(u"DELETE FROM quota_reserved WHERE expires_at < ?"_s, {now});
    if (!reservations) done = std::unexpected(reservations.error());
  }
  if (done) done = connection.commit();
  if (!done) connection.rollback();
  return done;
}

}  // namespace

Maintenance::Maintenance(Database& database, BlobStore& blobs)
    : database_(database), blobs_(blobs), thread_([this](const std::stop_token& stop) { work(stop); }) {}

Stored<int> Maintenance::purge(Database& database, BlobStore& blobs) {
  const qint64 now = QDateTime::currentSecsSinceEpoch();
  if (const auto forgotten = forget(database.connection(), now); !forgotten) return std::unexpected(forgotten.error());
  const LinkStore links(database);
  return blobs.sweep([&](const QString& prefix) { return links.references(prefix, now); });
}

void Maintenance::work(const std::stop_token& stop) {
  std::mutex sleeping;
  std::condition_variable_any never;
  std::unique_lock lock(sleeping);
  while (!stop.stop_requested()) {
    const auto removed = purge(database_, blobs_);
    if (!removed)
      logLine("purge: %s", qPrintable(removed.error().detail));
    else if (*removed > 0)
      logLine("purge: %d blobs removed", *removed);
    never.wait_for(lock, stop, kInterval, [] { return false; });
  }
}
