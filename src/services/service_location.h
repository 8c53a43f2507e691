#pragma once

#include <QByteArray>
#include <QUrl>

#include <expected>

#include "services/service_error.h"

/// What the two services are asked for; each has a fixed path on one of them.
enum class ServiceOperation {
  image,
  prompt,
  question,
  text,
  imageQuestion,
  suggestion,
  feedback,
  event,
  quota,
  upload,
  imageGeneration,
};

/// Where the two services are at this moment, and what requests carry.
struct ServiceLocation {
  /// Base URLs without a slash at the end; empty: not set.
  QUrl api;
  QUrl links;
  /// What the tools' requests carry; empty: nothing.
  QByteArray serviceToken;
  /// True: this program's own child, which takes `serviceToken` in place of the user's credential.
  bool isBuiltIn = false;

  bool operator==(const ServiceLocation&) const = default;

  /// Error: that service has no base URL.
  std::expected<QUrl, ServiceError> url(ServiceOperation operation) const;
};
