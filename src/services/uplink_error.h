#pragma once

#include <QUrl>

#include <expected>
#include <variant>

#include "core/net/http_client.h"
#include "services/service_error.h"
#include "services/told_error.h"

/// Why an upload gave no link.
class UplinkError : public ToldError<UplinkError> {
 public:
  /// The service answered with a status that is no success.
  static UplinkError badStatus(int status, const QByteArray& body);
  /// It took the upload, but there is no link in its answer.
  static UplinkError noURLInResponse(const QByteArray& body);

 private:
  using ToldError::ToldError;
};

/// The link in the answer of the link-hosting service: the JSON members "url", "link" or "href", or "url" in its member
/// "data", or else the whole body.
std::expected<QUrl, UplinkError> linkIn(const std::expected<HttpResponse, HttpError>& response);
