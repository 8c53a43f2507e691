#pragma once

#include "service/accounts/quota.h"
#include "service/accounts/token_gate.h"
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

 private:
  void addLinks(Place& place);
  void addReports(Place& place);

  PublicAddress address_;
  WriteQueue writes_;
  Quota quota_;
  TokenGate gate_;
  Workers workers_;
  Router router_;
  Maintenance maintenance_;
};
