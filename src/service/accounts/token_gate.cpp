#include "service/accounts/token_gate.h"

#include "service/accounts/secret.h"
#include "service/accounts/token_store.h"
#include "service/log.h"

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView kScheme = "Bearer ";
/// So many seconds' worth may come at once.
constexpr double kBurst = 5;
constexpr double kFailuresPerSecond = 0.5;
constexpr double kMostFailures = 20;

Response tooOften() {
  Response response = Response::text(429, "Too many requests; try again in a moment.");
  response.add("Retry-After", "2");
  return response;
}

Response unknownCredential() {
  Response response = Response::text(401, "A valid credential is needed.");
  response.add("WWW-Authenticate", "Bearer");
  return response;
}

}  // namespace

TokenGate::TokenGate(Database& database, const Limits& limits, const QByteArray& ownSecret, const QString& ownName)
    : database_(database),
      own_(ownSecret.isEmpty() ? QString() : secretDigest(ownSecret)),
      ownName_(ownName),
      addresses_(limits.perAddress, limits.perAddress * kBurst),
      tokens_(limits.perToken, limits.perToken * kBurst),
      failures_(kFailuresPerSecond, kMostFailures) {}

std::expected<Caller, Response> TokenGate::admit(const Request& request, Endpoint::Access access) {
  const auto now = std::chrono::steady_clock::now();
  if (!addresses_.admits(request.address, now)) return std::unexpected(tooOften());
  if (access == Endpoint::Access::open) return Caller{};
  auto caller = identify(request);
  if (!caller) return caller;
  if (!tokens_.admits(caller->owner.toUtf8(), now)) return std::unexpected(tooOften());
  if (access == Endpoint::Access::person && caller->kind != Caller::Kind::person)
    return std::unexpected(Response::text(403, "This needs a person's credential."));
  return caller;
}

std::expected<Caller, Response> TokenGate::identify(const Request& request) {
  const auto now = std::chrono::steady_clock::now();
  if (!failures_.admits(request.address, now, false)) return std::unexpected(tooOften());
  const QByteArray header = request.header("authorization");
  if (!header.startsWith(kScheme)) return std::unexpected(unknownCredential());
  const auto caller = lookUp(QByteArrayView(header).sliced(kScheme.size()));
  if (!caller) {
    logLine("storage: %s", qPrintable(caller.error().detail));
    return std::unexpected(Response::text(503, caller.error().description().toUtf8()));
  }
  if (*caller) return **caller;
  failures_.admits(request.address, now);
  return std::unexpected(unknownCredential());
}

Stored<std::optional<Caller>> TokenGate::lookUp(QByteArrayView secret) {
  // Digests tell nothing about the secret by the time that comparing them takes.
  if (!own_.isEmpty() && secretDigest(secret) == own_)
    return Caller{Caller::Kind::person, u"own:"_s + ownName_, ownName_, ownName_};
  const auto token = tokens::find(database_.connection(), secret);
  if (!token) return std::unexpected(token.error());
  if (!*token) return std::nullopt;
  return Caller{(*token)->kind, u"token:%1"_s.arg((*token)->id), (*token)->name, (*token)->plan};
}
