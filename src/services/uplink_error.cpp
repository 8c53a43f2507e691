#include "services/uplink_error.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QStringDecoder>

#include <array>
#include <optional>

#include "services/base_url.h"

using namespace Qt::StringLiterals;

namespace {

constexpr std::array kMembers = {"url"_L1, "link"_L1, "href"_L1};

/// A web address that somebody can open; none for any other text.
std::optional<QUrl> webAddress(const QString& text) {
  const QUrl url(text, QUrl::StrictMode);
  return isWebAddress(url) ? std::optional(url) : std::nullopt;
}

std::optional<QUrl> linkInObject(const QJsonObject& object) {
  for (const auto member : kMembers)
    if (const auto url = webAddress(object.value(member).toString())) return url;
  return webAddress(object.value("data"_L1).toObject().value("url"_L1).toString());
}

std::optional<QUrl> extractURL(const QByteArray& body) {
  if (const auto url = linkInObject(QJsonDocument::fromJson(body).object())) return url;
  return webAddress(decoded(body).trimmed());
}

}  // namespace

UplinkError UplinkError::badStatus(int status, const QByteArray& body) {
  return of(httpFailure(u"Upload failed"_s, {status, {}, body}));
}

UplinkError UplinkError::noURLInResponse(const QByteArray& body) {
  return of(u"No URL in response: "_s + beginning(body));
}

std::expected<QUrl, UplinkError> linkIn(const std::expected<HttpResponse, HttpError>& response) {
  if (!response) return std::unexpected(UplinkError::of(response.error().description()));
  if (!response->isSuccess()) return std::unexpected(UplinkError::badStatus(response->status, response->body));
  if (const auto url = extractURL(response->body)) return *url;
  return std::unexpected(UplinkError::noURLInResponse(response->body));
}
