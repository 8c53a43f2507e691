#pragma once

#include "service/accounts/quota.h"
#include "service/accounts/token_gate.h"
#include "service/ai/ai_exchange.h"
#include "service/ai/http_call.h"
#include "service/command/place.h"
#include "service/command/serve_options.h"
#include "service/links/public_address.h"
#include "service/maintenance.h"
#include "service/reports/report_endpoint.h"

/// Everything that the running service consists of but the server: made and ended in one order.
class Site {
 public:
  Site(Place& place, const ServeOptions& options, const QByteArray& credential);

  const Router& router() const { return router_; }
  /// It may be set to the very end of the program.
  const std::shared_ptr<ProviderSlot>& providers() const { return providers_; }

 private:
  void addLinks(Place& place);
  void addReports(Place& place);

  HttpLibrary http_;
  PublicAddress address_;
  WriteQueue writes_;
  Quota quota_;
  TokenGate gate_;
  std::shared_ptr<ProviderSlot> providers_;
  PictureRoom pictureRoom_;
  Workers workers_;
  Desk desk_;
  Router router_;
  Maintenance maintenance_;
};
