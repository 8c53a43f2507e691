#pragma once

#include <QUrl>

#include <expected>
#include <variant>

#include "core/net/http_client.h"
#include "services/service_error.h"

/// Why an upload gave no link.
struct UplinkError {
  enum class Reason {
    /// The service answered with a status that is no success.
    badStatus,
    /// It took the upload, but there is no link in its answer.
    noURLInResponse,
    /// There is no answer, or no service to ask; `detail` is the whole text.
    other,
  };
  Reason reason = Reason::other;
  int status = 0;
  QByteArray body{};
  QString detail{};

  static UplinkError badStatus(int status, const QByteArray& body) { return {Reason::badStatus, status, body}; }
  static UplinkError noURLInResponse(const QByteArray& body) { return {Reason::noURLInResponse, 0, body}; }
  static UplinkError of(const QString& text) { return {Reason::other, 0, {}, text}; }

  QString description() const;
};

/// The link in the answer of the link-hosting service: the JSON members "url", "link" or "href", or "url" in its member
/// "data", or else the whole body.
std::expected<QUrl, UplinkError> linkIn(const std::expected<HttpResponse, HttpError>& response);
