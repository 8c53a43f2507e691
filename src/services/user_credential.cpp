#include "services/user_credential.h"

void UserCredential::read(const JobRef& job, CredentialVault::Read read) {
  if (known_) {
    // Later, like every other answer, so that callers have one order of things to think of.
    job.later([read = std::move(read), secret = *known_] { read(secret); });
    return;
  }
  vault_.read(account_, job, [this, read = std::move(read), before = changes_](const auto& secret) {
    if (secret && before == changes_) known_ = *secret;
    read(secret);
  });
}

void UserCredential::forget() {
  known_.reset();
  ++changes_;
  Q_EMIT changed();
}

void UserCredential::store(const QByteArray& secret, const JobRef& job, CredentialVault::Done done) {
  known_.reset();
  ++changes_;
  vault_.write(account_, secret, job, [this, secret, done = std::move(done)](const auto& written) {
    if (written) remember(secret);
    done(written);
  });
}

void UserCredential::remove(const JobRef& job, CredentialVault::Done done) {
  known_.reset();
  ++changes_;
  vault_.remove(account_, job, [this, done = std::move(done)](const auto& removed) {
    if (removed) remember({});
    done(removed);
  });
}

void UserCredential::remember(const QByteArray& secret) {
  known_ = secret;
  Q_EMIT changed();
}
