#include "app/usage/usage_window_controller.h"

#include "services/quota_client.h"

using namespace Qt::StringLiterals;

UsageWindowController::UsageWindowController(const QuotaStore& store, QuotaClient& client)
    : store_(store), client_(client) {
  connect(&store_, &QuotaStore::changed, this, &UsageWindowController::changed);
}

UsageWindowController::State UsageWindowController::state() const {
  if (!store_.metrics().empty()) return State::known;
  return refresh_.isRunning() ? State::loading : State::unknown;
}

bool UsageWindowController::isPaid() const { return plan() == "paid"_L1; }

void UsageWindowController::refresh() {
  refresh_ = Job::start();
  Q_EMIT changed();
  client_.refresh(refresh_, [this](const auto&) {
    refresh_.cancel();
    Q_EMIT changed();
  });
}
