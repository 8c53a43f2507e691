#pragma once

#include <expected>

#include "services/metered_error.h"
#include "services/quota_store.h"

/// What a metered request ended with: the answer if it is a success. Whatever its status, the counters in its headers
/// go to `quota` first, so that a refusal refreshes them too.
std::expected<HttpResponse, MeteredFailure> meteredAnswer(const std::expected<HttpResponse, HttpError>& result,
                                                          const QString& metric, QuotaStore& quota);
