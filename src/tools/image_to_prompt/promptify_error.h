#pragma once

#include "services/service_error.h"
#include "services/told_error.h"

/// Why there is no prompt.
class PromptifyError : public ToldError<PromptifyError> {
 public:
  /// The service answered with a status that is no success.
  static PromptifyError badStatus(const HttpResponse& response) {
    return of(httpFailure(QStringLiteral("Processing failed"), response));
  }
  /// It answered, but with no prompt.
  static PromptifyError noPrompt(const QByteArray& body) {
    return of(QStringLiteral("No prompt in response: ") + beginning(body));
  }

 private:
  using ToldError::ToldError;
};
