#include "service/storage/database_location.h"

#include <QUrl>
#include <QUrlQuery>

using namespace Qt::StringLiterals;

namespace {

constexpr auto kSqlite = "sqlite:"_L1;

DatabaseLocation sqlite(const QString& path) {
  // Waits while another process writes: the program's own commands work while the service runs.
  return {u"QSQLITE"_s, path, {}, -1, {}, {}, u"QSQLITE_BUSY_TIMEOUT=10000"_s};
}

std::expected<DatabaseLocation, QString> postgres(const QUrl& url) {
  const QString name = url.path().mid(1);
  if (!url.isValid() || name.isEmpty()) return std::unexpected(u"the database URL names no database"_s);
  DatabaseLocation location{
      u"QPSQL"_s, name, url.host(), url.port(), url.userName(QUrl::FullyDecoded), url.password(QUrl::FullyDecoded), {}};
  QStringList options;
  const auto items = QUrlQuery(url).queryItems(QUrl::FullyDecoded);
  for (const auto& [key, value] : items) {
    if (key == "host"_L1)
      location.host = value;
    else
      options.append(key + u'=' + value);
  }
  location.options = options.join(u';');
  return location;
}

}  // namespace

std::expected<DatabaseLocation, QString> DatabaseLocation::parse(const QString& url, const QString& dataFolder) {
  if (url.isEmpty()) return sqlite(dataFolder + u"/service.db"_s);
  if (url.startsWith(kSqlite) && url.size() > kSqlite.size()) return sqlite(url.mid(kSqlite.size()));
  const QUrl parsed(url);
  if (parsed.scheme() == "postgresql"_L1 || parsed.scheme() == "postgres"_L1) return postgres(parsed);
  return std::unexpected(u"a database URL begins with 'postgresql://' or 'sqlite:'"_s);
}
