#include "service/links/link_store.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kRemembered = 30LL * 24 * 3600;

Link fromRow(const QVariantList& row) {
  return {.id = row[0].toString(),
          .blob = row[1].toString(),
          .size = row[2].toLongLong(),
          .name = row[3].toString(),
          .type = row[4].toString().toUtf8(),
          .isShown = row[5].toInt() != 0,
          .owner = row[6].toString(),
          .createdAt = row[7].toLongLong(),
          .expiresAt = row[8].toLongLong()};
}

}  // namespace

Stored<void> LinkStore::insert(Connection& connection, const Link& link) {
  const auto done = connection.run(
      u"INSERT INTO links (id, blob, size, name, type, shown, owner, created_at, expires_at) "
      "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)"_s,
      {link.id, link.blob, link.size, link.name, QString::fromUtf8(link.type), link.isShown ? 1 : 0, link.owner,
       link.createdAt, link.expiresAt});
  if (!done) return std::unexpected(done.error());
  return {};
}

Stored<std::optional<Link>> LinkStore::find(const QString& id) const {
  const auto rows = database_.connection().run(
      u"SELECT id, blob, size, name, type, shown, owner, created_at, expires_at FROM links WHERE id = ?"_s, {id});
  if (!rows) return std::unexpected(rows.error());
  if (rows->empty()) return std::nullopt;
  return fromRow(rows->front());
}

Stored<bool> LinkStore::remove(Connection& connection, const QString& id) {
  const auto rows = connection.run(u"DELETE FROM links WHERE id = ? RETURNING id"_s, {id});
  if (!rows) return std::unexpected(rows.error());
  return !rows->empty();
}

Stored<QSet<QString>> LinkStore::references(const QString& prefix, qint64 now) const {
  // "g" comes right after the last hexadecimal digit.
  const auto rows = database_.connection().run(
      u"SELECT blob FROM links WHERE blob >= ? AND blob < ? AND expires_at > ? "
      "UNION SELECT blob FROM report_images WHERE blob >= ? AND blob < ?"_s,
      {prefix, prefix + u'g', now, prefix, prefix + u'g'});
  if (!rows) return std::unexpected(rows.error());
  QSet<QString> blobs;
  for (const QVariantList& row : *rows) blobs.insert(row.front().toString());
  return blobs;
}

Stored<void> LinkStore::forget(Connection& connection, qint64 now) {
  const auto done = connection.run(u"DELETE FROM links WHERE expires_at < ?"_s, {now - kRemembered});
  if (!done) return std::unexpected(done.error());
  return {};
}
