#pragma once

#include <optional>

#include "service/http/message.h"
#include "service/storage/connection.h"

/// The credentials that the operator has given out; only their digests are stored.
struct Token {
  qint64 id = 0;
  QString name;
  Caller::Kind kind = Caller::Kind::person;
  QString plan;
  qint64 createdAt = 0;
  /// 0: it is valid.
  qint64 revokedAt = 0;
};

namespace tokens {

/// `secret` is what its bearer sends.
Stored<void> add(Connection& connection, const Token& token, QByteArrayView secret);
Stored<std::vector<Token>> list(Connection& connection);
/// Whether there was a valid one of that name.
Stored<bool> revoke(Connection& connection, const QString& name, qint64 now);
/// Nothing: no valid token has this secret.
Stored<std::optional<Token>> find(Connection& connection, QByteArrayView secret);

/// What each kind is called in the database and on the command line.
QString kindName(Caller::Kind kind);

}  // namespace tokens
