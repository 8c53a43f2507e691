#pragma once

#include <QUrl>

#include <expected>

/// Why a text cannot be the base URL of a service.
struct BaseUrlError {
  enum class Reason { notAnAddress, insecure, hasMore };
  Reason reason = Reason::notAnAddress;

  QString description() const;
};

/// The base URL in `text`, without slashes at its end. It must be https (http for this computer itself), with nothing
/// in it but host, port and path.
std::expected<QUrl, BaseUrlError> parseBaseUrl(const QString& text);
/// Whether `url` is an address that a web request can be sent to: http or https, with a host.
bool isWebAddress(const QUrl& url);
/// `path` ("/v1/quota") below `base`.
QUrl below(QUrl base, const QString& path);
