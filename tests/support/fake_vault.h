#pragma once

#include <map>
#include <optional>

#include "platform/credential_vault.h"

/// A keychain in memory; `error` makes it refuse everything.
class FakeVault final : public CredentialVault {
 public:
  void read(const QString& account, const JobRef& job, Read read) override {
    ++reads;
    job.later([this, account, read = std::move(read)] {
      if (error)
        read(std::unexpected(*error));
      else
        read(secrets[account]);
    });
  }
  void write(const QString& account, const QByteArray& secret, const JobRef& job, Done done) override {
    finish(job, std::move(done), [this, account, secret] { secrets[account] = secret; });
  }
  void remove(const QString& account, const JobRef& job, Done done) override {
    finish(job, std::move(done), [this, account] { secrets.erase(account); });
  }

  std::map<QString, QByteArray> secrets;
  std::optional<CredentialError> error;
  int reads = 0;

 private:
  template <class Change>
  void finish(const JobRef& job, Done done, Change change) {
    job.later([this, done = std::move(done), change = std::move(change)] {
      if (error) {
        done(std::unexpected(*error));
        return;
      }
      change();
      done({});
    });
  }
};
