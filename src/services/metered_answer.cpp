#include "services/metered_answer.h"

std::expected<HttpResponse, MeteredFailure> meteredAnswer(const std::expected<HttpResponse, HttpError>& result,
                                                          const QString& metric, QuotaStore& quota) {
  constexpr int kPaymentRequired = 402;
  if (!result) return std::unexpected(result.error());
  quota.record(*result, metric);
  if (result->isSuccess()) return *result;
  if (result->status == kPaymentRequired)
    if (const auto refusal = quotaError(result->body)) return std::unexpected(*refusal);
  return std::unexpected(MeteredError::badStatus(result->status, result->body));
}
