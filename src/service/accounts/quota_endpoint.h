#pragma once

#include "service/accounts/quota.h"
#include "service/http/endpoint.h"

/// GET /v1/quota: the caller's plan and counters. Metrics without an end have none.
class QuotaEndpoint final : public SimpleEndpoint {
 public:
  explicit QuotaEndpoint(const Quota& quota) : quota_(quota) {}

  Access access() const override { return Access::person; }
  void answer(const Request& request, const QByteArray& body, const Reply& reply) override;

 private:
  const Quota& quota_;
};
