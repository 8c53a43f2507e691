#include "tools/generate_image/generate_image_client.h"

#include "base/background.h"
#include "services/bearer.h"
#include "services/metered_answer.h"
#include "services/multipart.h"
#include "services/services.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kTimeLimit = 180s;
/// An answer that comes in drops would otherwise never be given up.
constexpr auto kAnswerLimit = 240s;

Multipart::Fields fieldsOf(const ImageRequest& request) {
  Multipart::Fields fields{{u"prompt"_s, request.prompt},
                           {u"size"_s, rawValue(request.options.size)},
                           {u"quality"_s, rawValue(request.options.quality)}};
  if (request.isEdit) fields.emplace(u"edit"_s, u"true"_s);
  return fields;
}

std::vector<ClipboardImage> imagesOf(const ImageRequest& request) {
  std::vector<ClipboardImage> images;
  for (const QByteArray& png : request.references)
    images.push_back({png, u"image-%1.png"_s.arg(images.size() + 1), u"image/png"_s});
  return images;
}

HttpRequest httpRequest(const QUrl& endpoint, const QByteArray& authorization, const ImageRequest& request) {
  HttpRequest http = Multipart::request(endpoint, {}, imagesOf(request), fieldsOf(request));
  if (!authorization.isEmpty()) http.headers.emplace_back("Authorization", authorization);
  http.timeout = kTimeLimit;
  http.answerDeadline = kAnswerLimit;
  http.maximumAnswer = kLargestGeneration;
  return http;
}

GenerateImageClient::Outcome failure(const ServiceError& error) {
  return std::unexpected(GenerateImageError::of(error.description()));
}

}  // namespace

void GenerateImageClient::generate(const ImageRequest& request, const JobRef& job, const Done& done) {
  services_.environments.current<GenerateImageEnvironment>(job, [=, this](const auto& environment) {
    if (!environment) return done(failure(environment.error()));
    authorize(*environment, job, [=, this, endpoint = environment->endpoint](const auto& authorization) {
      if (!authorization) return done(failure(authorization.error()));
      send(httpRequest(endpoint, *authorization, request), job, done);
    });
  });
}

void GenerateImageClient::authorize(const GenerateImageEnvironment& environment, const JobRef& job,
                                    const Authorized& answer) {
  if (environment.overrideToken) return answer(bearer(*environment.overrideToken));
  // Elsewhere not the built-in service's token: that opens nothing there, and is nobody else's business.
  if (environment.isOverride) return services_.api.authorization(ServiceLocation(), job, answer);
  services_.api.authorize(job, [answer](const auto& access) {
    if (access)
      answer(access->authorization);
    else
      answer(std::unexpected(access.error()));
  });
}

void GenerateImageClient::send(const HttpRequest& request, const JobRef& job, const Done& done) {
  services_.http.send(request, job, [this, job, done](const auto& result) {
    const auto answer = meteredAnswer(result, kMetric, services_.quota);
    if (!answer) return done(std::unexpected(GenerateImageError::of(answer.error())));
    runInBackground(
        job, [response = *answer](const std::stop_token&) { return imageIn(response); },
        [done](const Outcome& outcome) { done(outcome); });
  });
}
