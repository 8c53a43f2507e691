#include "platform/credential_vault.h"

namespace {

/// Answers on a later turn of the event loop, as a keychain would.
template <class Answer>
void refuse(const JobRef& job, Answer answer) {
  job.later([answer = std::move(answer)] {
    answer(std::unexpected(CredentialError{CredentialError::Reason::noKeychain, {}}));
  });
}

#ifdef Q_OS_MACOS
constexpr QLatin1StringView kRemedy("Log out and in again, or repair it with Keychain Access.");
#else
constexpr QLatin1StringView kRemedy("Start and unlock one (GNOME Keyring or KWallet) and try again.");
#endif

}  // namespace

QString CredentialError::description() const {
  switch (reason) {
    case Reason::noKeychain:
      return QStringLiteral("There is no keychain to keep the credential in. ") + kRemedy;
    case Reason::denied:
      return QStringLiteral("The keychain is locked. Unlock it and try again.");
    case Reason::failed:
      break;
  }
  return QStringLiteral("The keychain failed: %1").arg(detail);
}

void CredentialVault::read(const QString&, const JobRef& job, Read read) { refuse(job, std::move(read)); }

void CredentialVault::write(const QString&, const QByteArray&, const JobRef& job, Done done) {
  refuse(job, std::move(done));
}

void CredentialVault::remove(const QString&, const JobRef& job, Done done) { refuse(job, std::move(done)); }
