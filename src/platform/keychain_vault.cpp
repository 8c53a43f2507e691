#include "platform/keychain_vault.h"

#include <qt6keychain/keychain.h>

#include <QPointer>

using namespace Qt::StringLiterals;

namespace {

using Reason = CredentialError::Reason;

#ifdef Q_OS_MACOS
constexpr auto kAnyOtherReason = Reason::failed;
#else
// A missing bus, a missing daemon and one that never got a keyring all come as "other error", within milliseconds.
constexpr auto kAnyOtherReason = Reason::noKeychain;
#endif

CredentialError errorOf(const QKeychain::Job& work) {
  switch (work.error()) {
    case QKeychain::AccessDenied:
    case QKeychain::AccessDeniedByUser:
      return {Reason::denied, work.errorString()};
    case QKeychain::NoBackendAvailable:
    case QKeychain::NotImplemented:
      return {Reason::noKeychain, work.errorString()};
    case QKeychain::OtherError:
      return {kAnyOtherReason, work.errorString()};
    default:
      return {Reason::failed, work.errorString()};
  }
}

class KeychainVault final : public CredentialVault {
 public:
  void read(const QString& account, const JobRef& job, Read read) override {
    if (!job.isRunning()) return;
    auto* work = new QKeychain::ReadPasswordJob(u"Vantle"_s);
    start(*work, account, job, [work, read = std::move(read)](const auto& result) {
      if (result)
        read(work->error() == QKeychain::EntryNotFound ? QByteArray() : work->binaryData());
      else
        read(std::unexpected(result.error()));
    });
  }
  void write(const QString& account, const QByteArray& secret, const JobRef& job, Done done) override {
    if (!job.isRunning()) return;
    auto* work = new QKeychain::WritePasswordJob(u"Vantle"_s);
    work->setBinaryData(secret);
    start(*work, account, job, std::move(done));
  }
  void remove(const QString& account, const JobRef& job, Done done) override {
    if (job.isRunning()) start(*new QKeychain::DeletePasswordJob(u"Vantle"_s), account, job, std::move(done));
  }

 private:
  /// The library's jobs delete themselves; the end of ours makes them silent, but does not undo them.
  static void start(QKeychain::Job& work, const QString& account, const JobRef& job, Done done) {
    work.setKey(account);
    work.setInsecureFallback(false);
    const auto finish = job.bind([&work, done = std::move(done)](QKeychain::Job*) mutable {
      if (work.error() == QKeychain::NoError || work.error() == QKeychain::EntryNotFound)
        done({});
      else
        done(std::unexpected(errorOf(work)));
    });
    QObject::connect(&work, &QKeychain::Job::finished, &work, finish);
    work.start();
  }
};

}  // namespace

std::unique_ptr<CredentialVault> makeKeychainVault() { return std::make_unique<KeychainVault>(); }
