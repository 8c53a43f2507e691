#include "services/quota_client.h"

#include <QJsonDocument>

using namespace std::chrono_literals;

namespace {

constexpr auto kTimeLimit = 20s;

}  // namespace

void QuotaClient::refresh(const JobRef& job, Done done) {
  api_.authorize(job, [this, job, done = std::move(done)](const auto& access) {
    if (access)
      request(*access, job, done);
    else
      done(std::unexpected(access.error()));
  });
}

void QuotaClient::request(const MeteredAccess& access, const JobRef& job, const Done& done) {
  const auto url = access.location.url(ServiceOperation::quota);
  if (!url) {
    done(std::unexpected(url.error()));
    return;
  }
  if (access.authorization.isEmpty()) {
    done(std::unexpected(ServiceError{ServiceError::Reason::noCredential, {}}));
    return;
  }
  const HttpRequest request{
      .method = "GET", .url = *url, .headers = {{"Authorization", access.authorization}}, .deadline = kTimeLimit};
  http_.send(request, job, [this, done](const auto& response) { done(take(response)); });
}

std::expected<void, ServiceError> QuotaClient::take(const std::expected<HttpResponse, HttpError>& response) {
  if (!response) return std::unexpected(ServiceError::of(response.error()));
  if (response->status != 200) return std::unexpected(ServiceError::badStatus(*response));
  const auto document = QJsonDocument::fromJson(response->body);
  if (!document.isObject()) return std::unexpected(ServiceError{ServiceError::Reason::badAnswer, {}});
  store_.apply(document.object());
  return {};
}
