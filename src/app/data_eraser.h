#pragma once

#include <QStringList>

#include <functional>

#include "base/job.h"
#include "core/data/data_removal.h"
#include "core/presenters/fresh_start.h"
#include "platform/credential_vault.h"
#include "platform/login_item.h"

/// Takes back everything that Vantle keeps of its user: first what is kept elsewhere, credentials and the entry that
/// opens it at login, each of which can be refused; then the data, with a fresh start. Main thread only.
class DataEraser {
 public:
  struct Services {
    CredentialVault& credentials;
    LoginItem& loginItem;
    FreshStart& freshStart;
  };
  /// Why nothing was deleted, as a sentence for the user.
  using Refused = std::function<void(const QString& reason)>;

  DataEraser(Services services, DataRemoval removal, QStringList accounts)
      : services_(services), removal_(std::move(removal)), accounts_(std::move(accounts)) {}

  /// Ends in a fresh start, or in `refused` with the data as it was.
  void erase(Refused refused);
  void cancel() { job_.cancel(); }
  bool isErasing() const { return job_.isRunning(); }

 private:
  void removeCredentials(qsizetype next);
  void removeLoginItem();
  void refuse(const QString& reason);

  Services services_;
  DataRemoval removal_;
  /// The keychain's accounts that may hold a secret of ours.
  QStringList accounts_;
  Refused refused_;
  Job job_;
};
