#include "app/data_eraser.h"

#include <utility>

void DataEraser::erase(Refused refused) {
  if (isErasing()) return;
  job_ = Job::start();
  refused_ = std::move(refused);
  // Asked before anything is taken back: half a deletion would be the worst of both.
  if (const auto allowed = removal_.check(); !allowed)
    refuse(allowed.error().description());
  else
    removeCredentials(0);
}

void DataEraser::removeCredentials(qsizetype next) {
  if (next == accounts_.size()) {
    removeLoginItem();
    return;
  }
  services_.credentials.remove(accounts_.at(next), job_,
                               [this, next](const std::expected<void, CredentialError>& done) {
                                 // Where there is no keychain, nothing was ever kept in it.
                                 if (done || done.error().reason == CredentialError::Reason::noKeychain)
                                   removeCredentials(next + 1);
                                 else
                                   refuse(done.error().description());
                               });
}

void DataEraser::removeLoginItem() {
  const LoginItem::State state = services_.loginItem.state();
  const bool isSet = state == LoginItem::State::on || state == LoginItem::State::awaitsApproval;
  const auto removed = isSet ? services_.loginItem.setEnabled(false) : std::expected<void, LoginItemError>();
  if (!removed) {
    refuse(removed.error().description());
    return;
  }
  job_.cancel();
  services_.freshStart.deleteDataAndStartAnew();
}

void DataEraser::refuse(const QString& reason) {
  job_.cancel();
  if (const Refused refused = std::exchange(refused_, nullptr)) refused(reason);
}
