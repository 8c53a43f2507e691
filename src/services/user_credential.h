#pragma once

#include <QObject>

#include <optional>

#include "platform/credential_vault.h"

/// One credential of the user's, kept in the keychain: read when it is first needed, then remembered for the run, never
/// logged. Main thread only.
class UserCredential : public QObject {
  Q_OBJECT

 public:
  /// The keychain's account of the credential for the API service.
  static constexpr QLatin1StringView kServiceAccount{"api"};
  /// The keychain's account of the AI provider's key.
  static constexpr QLatin1StringView kProviderAccount{"ai-provider"};

  UserCredential(CredentialVault& vault, const QString& account) : vault_(vault), account_(account) {}

  /// Answers with the credential, empty when there is none.
  void read(const JobRef& job, CredentialVault::Read read);
  /// Another process may have changed it: it is read anew when it is next needed.
  void forget();
  void store(const QByteArray& secret, const JobRef& job, CredentialVault::Done done);
  void remove(const JobRef& job, CredentialVault::Done done);

 Q_SIGNALS:
  /// Another credential, or none, is kept now.
  void changed();

 private:
  void remember(const QByteArray& secret);

  CredentialVault& vault_;
  QString account_;
  std::optional<QByteArray> known_;
  /// Counts changes: what was read before one must not be remembered after it.
  int changes_ = 0;
};
