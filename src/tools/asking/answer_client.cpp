#include "tools/asking/answer_client.h"

#include "services/bearer.h"
#include "services/metered_answer.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// An answer that comes in drops would otherwise never be given up; one that is thought over and long needs minutes.
constexpr auto kAnswerLimit = 10min;

AskOutcome outcomeOf(const std::expected<HttpResponse, MeteredFailure>& response, const AnswerStream& stream) {
  if (!response) return std::unexpected(AskError::of(response.error()));
  return response->mediaType() == AnswerStream::kMediaType ? stream.outcome(response->body)
                                                           : wholeAnswer(response->body);
}

}  // namespace

/// An override's token is for its endpoint. Without one the user's own credential is carried, as the built-in service's
/// would be of no use anywhere else.
void AnswerClient::authorize(const TokenEnvironment& environment, const AskCall& call, const Go& go) {
  if (environment.isOverride && !environment.token.trimmed().isEmpty())
    return go({environment.endpoint, bearer(environment.token)});
  const auto take = [endpoint = environment.endpoint, call, go](const auto& authorization) {
    if (authorization) return go({endpoint, *authorization});
    call.done(std::unexpected(AskError::of(authorization.error())));
  };
  if (environment.isOverride) return services_.api.authorization(ServiceLocation(), call.job, take);
  services_.api.locate(call.job, [this, call, take](const auto& location) {
    if (location) return services_.api.authorization(*location, call.job, take);
    call.done(std::unexpected(AskError::of(location.error())));
  });
}

void AnswerClient::send(const QString& metric, HttpRequest request, const AskCall& call) {
  const auto stream = std::make_shared<AnswerStream>();
  request.answerDeadline = kAnswerLimit;
  request.headers.emplace_back("Accept", AnswerStream::kMediaType.toByteArray());
  request.receivedType = AnswerStream::kMediaType.toByteArray();
  request.received = call.job.bind([stream, grew = call.grew](const QByteArray& piece) {
    if (stream->take(piece) && grew) grew(stream->text());
  });
  const auto finish = [stream, metric, &quota = services_.quota, done = call.done](const auto& response) {
    done(outcomeOf(meteredAnswer(response, metric, quota), *stream));
  };
  services_.http.send(request, call.job, finish);
}

void addAuthorization(HttpRequest& request, const AskPlace& place) {
  if (!place.authorization.isEmpty()) request.headers.emplace_back("Authorization", place.authorization);
}
