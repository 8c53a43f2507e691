#pragma once

#include "services/metered_error.h"
#include "services/service_error.h"

/// Why a text was not transformed.
struct AITextTransformError {
  enum class Reason {
    /// The service answered with a status that is no success.
    badStatus,
    /// It answered, but there is no text in its answer.
    noText,
    /// There is no answer, no service to ask, or no allowance left; `detail` is the whole text.
    other,
  };
  Reason reason = Reason::other;
  int status = 0;
  QByteArray body{};
  QString detail{};

  static AITextTransformError badStatus(int status, const QByteArray& body) {
    return {Reason::badStatus, status, body, {}};
  }
  static AITextTransformError noText(const QByteArray& body) { return {Reason::noText, 0, body, {}}; }
  static AITextTransformError of(const MeteredFailure& failure) {
    return {Reason::other, 0, {}, ::description(failure)};
  }
  static AITextTransformError of(const ServiceError& error) { return {Reason::other, 0, {}, error.description()}; }

  QString description() const;
};
