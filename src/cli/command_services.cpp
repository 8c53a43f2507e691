#include "cli/command_services.h"

#include "core/net/app_channel.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Longer than the application gives its service to start.
constexpr auto kStartPatience = 15s;

std::unexpected<ServiceError> failure(const QString& text) {
  return std::unexpected(ServiceError{ServiceError::Reason::other, text});
}

std::expected<ServiceLocation, ServiceError> locationIn(const QJsonObject& answer) {
  const QUrl url(answer.value("url"_L1).toString(), QUrl::StrictMode);
  if (url.isValid() && !url.host().isEmpty())
    return ServiceLocation{url, url, answer.value("token"_L1).toString().toUtf8(), true};
  const QString error = answer.value("error"_L1).toString();
  return failure(error.isEmpty() ? u"Vantle is running but does not answer"_s : error);
}

}  // namespace

void CommandLineService::locate(const JobRef& job, Answer answer) {
  const auto reply = AppClient::request({{u"do"_s, u"service"_s}}, kStartPatience);
  const bool isRunning = reply || reply.error().kind != AppClient::Error::Kind::notRunning;
  if (!isRunning && purpose_ == Purpose::answer) return own_.locate(job, std::move(answer));
  std::expected<ServiceLocation, ServiceError> location = failure(
      u"Vantle is not running, and a link of the built-in service opens only while it is: start it with 'vantle', or "
      u"set a service of your own with 'vantle config service'"_s);
  if (reply) location = locationIn(*reply);
  if (!reply && isRunning) location = failure(reply.error().description());
  job.later([answer = std::move(answer), location] { answer(location); });
}
