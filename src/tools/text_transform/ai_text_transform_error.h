#pragma once

#include "services/metered_error.h"
#include "services/service_error.h"
#include "services/told_error.h"

/// Why a text was not transformed.
class AITextTransformError : public ToldError<AITextTransformError> {
 public:
  using ToldError::of;
  /// No allowance left, a status that is no success, or no answer.
  static AITextTransformError of(const MeteredFailure& failure) { return of(::description(failure)); }
  static AITextTransformError of(const ServiceError& error) { return of(error.description()); }
  /// It answered, but there is no text in its answer.
  static AITextTransformError noText(const QByteArray& body);

 private:
  using ToldError::ToldError;
};
