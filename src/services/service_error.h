#pragma once

#include <QString>

#include "core/net/http_client.h"
#include "platform/credential_vault.h"

/// Why a service did not do what was asked of it.
struct ServiceError {
  enum class Reason {
    /// A base URL is missing or cannot be used; `detail` says what about it.
    configuration,
    /// The user has not entered a credential.
    noCredential,
    /// It answered, with a status that is no success.
    badStatus,
    /// It answered with something that is not what was asked for.
    badAnswer,
    /// Anything else; `detail` is the whole text.
    other,
  };
  Reason reason = Reason::other;
  QString detail;

  static ServiceError of(const HttpError& error) { return {Reason::other, error.description()}; }
  static ServiceError of(const CredentialError& error) { return {Reason::other, error.description()}; }
  static ServiceError badStatus(const HttpResponse& response);

  QString description() const;
};

/// `body` as text; empty when it is not UTF-8.
QString decoded(const QByteArray& body);
/// The first 80 characters of `body`, as far as failures show it.
QString beginning(const QByteArray& body);
/// How every failed request ends: `phrase` ("Upload failed"), the status, and the first 80 characters of the body. A
/// body that is not UTF-8 counts as empty.
QString httpFailure(const QString& phrase, const HttpResponse& response);
