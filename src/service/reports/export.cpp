#include "service/reports/export.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace exporting {

namespace {

QString time(const QVariant& seconds) {
  return QDateTime::fromSecsSinceEpoch(seconds.toLongLong(), Qt::UTC).toString(Qt::ISODate);
}

QJsonObject object(const QVariant& body) { return QJsonDocument::fromJson(body.toString().toUtf8()).object(); }

using RowReader = std::function<Stored<bool>(const QVariantList&)>;

/// Reads in portions, by the number in the first column: `sql` ends in placeholders for the last one and the count.
Stored<void> portions(Connection& connection, const QString& sql, const QVariantList& values, const RowReader& read) {
  constexpr int kPortion = 500;
  qint64 last = 0;
  for (;;) {
    const auto rows = connection.run(sql, values + QVariantList{last, kPortion});
    if (!rows) return std::unexpected(rows.error());
    if (rows->empty()) return {};
    for (const QVariantList& row : *rows) {
      const auto goesOn = read(row);
      if (!goesOn) return std::unexpected(goesOn.error());
      if (!*goesOn) return {};
      last = row.front().toLongLong();
    }
  }
}

Stored<QJsonArray> images(Connection& connection, const QVariant& report, const QString& blobFolder) {
  const auto rows = connection.run(
      u"SELECT name, type, size, blob FROM report_images WHERE report = ? ORDER BY position"_s, {report});
  if (!rows) return std::unexpected(rows.error());
  QJsonArray found;
  for (const QVariantList& row : *rows) {
    const QString blob = row[3].toString();
    found.append(QJsonObject{{u"name"_s, row[0].toString()},
                             {u"type"_s, row[1].toString()},
                             {u"size"_s, row[2].toLongLong()},
                             {u"file"_s, blobFolder + u'/' + blob.left(2) + u'/' + blob}});
  }
  return found;
}

}  // namespace

Stored<void> events(Connection& connection, const Line& line) {
  return portions(connection, u"SELECT id, received_at, body FROM events WHERE id > ? ORDER BY id LIMIT ?"_s, {},
                  [&](const QVariantList& row) -> Stored<bool> {
                    QJsonObject event = object(row[2]);
                    event.insert("receivedAt"_L1, time(row[1]));
                    return line(event);
                  });
}

Stored<void> reports(Connection& connection, const QString& kind, const QString& blobFolder, const Line& line) {
  return portions(connection,
                  u"SELECT id, received_at, owner, person, body FROM reports WHERE kind = ? AND id > ? "
                  "ORDER BY id LIMIT ?"_s,
                  {kind}, [&](const QVariantList& row) -> Stored<bool> {
                    QJsonObject report = object(row[4]);
                    report.insert("id"_L1, row[0].toLongLong());
                    report.insert("receivedAt"_L1, time(row[1]));
                    report.insert("credential"_L1, row[2].toString());
                    if (!row[3].isNull()) report.insert("person"_L1, row[3].toString());
                    const auto pictures = images(connection, row[0], blobFolder);
                    if (!pictures) return std::unexpected(pictures.error());
                    report.insert("images"_L1, *pictures);
                    return line(report);
                  });
}

}  // namespace exporting
