#include "service/accounts/token_store.h"

#include <array>

#include "service/accounts/secret.h"

using namespace Qt::StringLiterals;

namespace tokens {

namespace {

constexpr std::array kKinds = {
    std::pair{Caller::Kind::service, "service"_L1},
    std::pair{Caller::Kind::person, "person"_L1},
};

Caller::Kind kindOf(const QString& name) {
  for (const auto& [kind, known] : kKinds)
    if (known == name) return kind;
  return Caller::Kind::nobody;
}

Token fromRow(const QVariantList& row) {
  return {row[0].toLongLong(), row[1].toString(),   kindOf(row[2].toString()),
          row[3].toString(),   row[4].toLongLong(), row[5].toLongLong()};
}

constexpr auto kColumns = "SELECT id, name, kind, plan, created_at, revoked_at FROM tokens "_L1;

}  // namespace

QString kindName(Caller::Kind kind) {
  for (const auto& [known, name] : kKinds)
    if (known == kind) return name;
  return {};
}

Stored<void> add(Connection& connection, const Token& token, QByteArrayView secret) {
  const auto done =
      connection.run(u"INSERT INTO tokens (name, kind, plan, digest, created_at) VALUES (?, ?, ?, ?, ?)"_s,
                     {token.name, kindName(token.kind), token.plan, secretDigest(secret), token.createdAt});
  if (!done) return std::unexpected(done.error());
  return {};
}

Stored<std::vector<Token>> list(Connection& connection) {
  const auto rows = connection.run(QString(kColumns) + u"ORDER BY name"_s);
  if (!rows) return std::unexpected(rows.error());
  std::vector<Token> found;
  for (const QVariantList& row : *rows) found.push_back(fromRow(row));
  return found;
}

Stored<bool> revoke(Connection& connection, const QString& name, qint64 now) {
  const auto rows = connection.run(
      u"UPDATE tokens SET revoked_at = ? WHERE name = ? AND revoked_at IS NULL RETURNING id"_s, {now, name});
  if (!rows) return std::unexpected(rows.error());
  return !rows->empty();
}

Stored<std::optional<Token>> find(Connection& connection, QByteArrayView secret) {
  const auto rows =
      connection.run(QString(kColumns) + u"WHERE digest = ? AND revoked_at IS NULL"_s, {secretDigest(secret)});
  if (!rows) return std::unexpected(rows.error());
  if (rows->empty()) return std::nullopt;
  return fromRow(rows->front());
}

}  // namespace tokens
