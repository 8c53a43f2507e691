#pragma once

#include <QString>

#include "service/endpoint.h"

/// GET /health: that the service runs.
class HealthEndpoint final : public Endpoint {
 public:
  bool isOpen() const override { return true; }
  Response answer(const Request&) override { return {200, R"({"status":"ok"})"}; }
};

/// GET /v1/quota: the plan of this service, and no counters while it has nothing that is metered.
class QuotaEndpoint final : public Endpoint {
 public:
  explicit QuotaEndpoint(const QString& plan) : plan_(plan) {}

  Response answer(const Request& request) override;

 private:
  QString plan_;
};
