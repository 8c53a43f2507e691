#pragma once

#include <QByteArray>
#include <QString>

#include <expected>
#include <functional>

#include "base/job.h"

/// Why the keychain did not do what was asked.
struct CredentialError {
  enum class Reason {
    /// There is no keychain, or nobody answers for it.
    noKeychain,
    /// The user, or a lock, keeps it closed.
    denied,
    failed,
  };
  Reason reason = Reason::failed;
  /// The system's own words; never the credential.
  QString detail;

  QString description() const;
};

/// The user's keychain: one secret an account, all of them below the service name "Vantle". Nothing is ever written
/// anywhere else. As it stands, of a system without one. Main thread only; answers come later, and never to a Job that
/// has ended.
class CredentialVault {
 public:
  /// An account that has no secret answers with an empty one.
  using Read = std::function<void(std::expected<QByteArray, CredentialError>)>;
  using Done = std::function<void(std::expected<void, CredentialError>)>;

  virtual ~CredentialVault() = default;

  virtual void read(const QString& account, const JobRef& job, Read read);
  virtual void write(const QString& account, const QByteArray& secret, const JobRef& job, Done done);
  /// Removing what is not there succeeds.
  virtual void remove(const QString& account, const JobRef& job, Done done);
};
