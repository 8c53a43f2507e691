#pragma once

#include <QString>

#include "core/net/http_client.h"

/// Why the user's words did not reach the maker.
struct ReportError {
  QString text;

  /// An answer whose status is no success.
  static ReportError badStatus(const HttpResponse& response);
  static ReportError of(const QString& text) { return {text}; }

  QString description() const { return text; }
};

using FeedbackError = ReportError;
using SuggestError = ReportError;
