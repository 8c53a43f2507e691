#pragma once

#include "service/http/endpoint.h"
#include "service/storage/database.h"

/// GET /health: that the service runs and reaches its database.
class HealthEndpoint final : public SimpleEndpoint {
 public:
  explicit HealthEndpoint(Database& database) : database_(database) {}

  Access access() const override { return Access::open; }
  bool isUnlimited() const override { return true; }
  void answer(const Request& request, const QByteArray& body, const Reply& reply) override;

 private:
  Database& database_;
};
