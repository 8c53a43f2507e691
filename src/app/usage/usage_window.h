#pragma once

#include "app/usage/usage_window_controller.h"
#include "core/ui/titled_window.h"

class UsageView;

/// The window "Usage". The counters are fetched each time it is opened.
class UsageWindow final : public TitledWindow {
  Q_OBJECT

 public:
  UsageWindow(const QuotaStore& store, QuotaClient& client);

  void open() override;

 private:
  UsageWindowController controller_;
  UsageView* view_;
};
