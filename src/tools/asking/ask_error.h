#pragma once

#include "services/metered_error.h"
#include "services/service_error.h"

/// Why a question was not answered.
class AskError {
 public:
  /// The service answered with something that holds no answer.
  static AskError noAnswer(const QByteArray& body);
  /// The answer stopped before its end.
  static AskError brokenOff();
  static AskError tooLarge();
  /// The service said so while it was answering.
  static AskError told(const QString& text);
  static AskError of(const MeteredFailure& failure) { return AskError(::description(failure)); }
  static AskError of(const ServiceError& error) { return AskError(error.description()); }

  const QString& description() const { return description_; }

 private:
  explicit AskError(QString description) : description_(std::move(description)) {}

  QString description_;
};
