#pragma once

#include "core/net/http_client.h"

/// Why there is no prompt.
struct PromptifyError {
  enum class Reason {
    /// The service answered with a status that is no success.
    badStatus,
    /// It answered, but with no prompt.
    noPrompt,
    /// There is no answer, or no service to ask; `detail` is the whole text.
    other,
  };
  Reason reason = Reason::other;
  int status = 0;
  QByteArray body{};
  QString detail{};

  static PromptifyError badStatus(const HttpResponse& response) {
    return {Reason::badStatus, response.status, response.body};
  }
  static PromptifyError noPrompt(const QByteArray& body) { return {Reason::noPrompt, 0, body}; }
  static PromptifyError of(const QString& text) { return {Reason::other, 0, {}, text}; }

  QString description() const;
};
