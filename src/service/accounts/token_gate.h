#pragma once

#include "service/accounts/rate_limiter.h"
#include "service/http/gate.h"
#include "service/storage/database.h"

/// Limits how often an address and a credential ask, and checks the credential: one from the database, or the one that
/// the service was started with. A service's credential uploads and reports; a person's does all. Whoever tries wrong
/// ones has to wait.
class TokenGate final : public Gate {
 public:
  struct Limits {
    /// Requests a second; 0: any number.
    double perAddress = 0;
    double perToken = 0;
  };

  /// `ownSecret`: the credential that it was started with; empty: none. `ownName` names its plan as well.
  TokenGate(Database& database, const Limits& limits, const QByteArray& ownSecret, const QString& ownName);

  std::expected<Caller, Response> admit(const Request& request, Endpoint::Access access) override;

 private:
  std::expected<Caller, Response> identify(const Request& request);
  Stored<std::optional<Caller>> lookUp(QByteArrayView secret);

  Database& database_;
  /// A digest; empty: none.
  QString own_;
  QString ownName_;
  RateLimiter addresses_;
  RateLimiter tokens_;
  /// Wrong credentials.
  RateLimiter failures_;
};
