#pragma once

#include "services/metered_api.h"
#include "services/quota_store.h"

/// Fetches the user's counters from the service into the store. Main thread only.
class QuotaClient {
 public:
  /// A value when the store was refreshed, else why it is as it was.
  using Done = std::function<void(std::expected<void, ServiceError>)>;

  QuotaClient(MeteredAPI& api, HttpClient& http, QuotaStore& store) : api_(api), http_(http), store_(store) {}

  /// Sends no request when the user has no credential. Takes 20 seconds at most, and the start of the built-in service.
  void refresh(const JobRef& job, Done done);

 private:
  void request(const MeteredAccess& access, const JobRef& job, const Done& done);
  std::expected<void, ServiceError> take(const std::expected<HttpResponse, HttpError>& response);

  MeteredAPI& api_;
  HttpClient& http_;
  QuotaStore& store_;
};
