#include "tools/text_transform/ai_text_transform_client.h"

#include <QJsonDocument>

#include <array>

#include "services/answer_text.h"
#include "services/metered_answer.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kTimeLimit = 60s;
constexpr std::array kMembers = {"text"_L1, "result"_L1, "output"_L1};

QByteArray bodyOf(const AITextTransformClient::Order& order) {
  QJsonObject body{{u"text"_s, order.text}};
  if (order.mode != TextTransformMode::custom)
    body.insert("action"_L1, namesOf(order.mode).action);
  else if (order.instruction)
    body.insert("instruction"_L1, *order.instruction);
  return QJsonDocument(body).toJson(QJsonDocument::Compact);
}

AITextTransformClient::Result textOf(const std::expected<HttpResponse, MeteredFailure>& answer) {
  if (!answer) return std::unexpected(AITextTransformError::of(answer.error()));
  if (const auto text = AITextTransformClient::extractText(answer->body)) return *text;
  return std::unexpected(AITextTransformError::noText(answer->body));
}

}  // namespace

void AITextTransformClient::transform(const Order& order, const JobRef& job, Done done) {
  services_.api.authorize(job, [this, order, job, done = std::move(done)](const auto& access) {
    if (access)
      send(order, *access, job, done);
    else
      done(std::unexpected(AITextTransformError::of(access.error())));
  });
}

void AITextTransformClient::send(const Order& order, const MeteredAccess& access, const JobRef& job, const Done& done) {
  const auto url = access.location.url(ServiceOperation::text);
  if (!url) {
    done(std::unexpected(AITextTransformError::of(url.error())));
    return;
  }
  HttpRequest request{.method = "POST",
                      .url = *url,
                      .headers = {{"Content-Type", "application/json"}},
                      .body = bodyOf(order),
                      .deadline = kTimeLimit};
  if (!access.authorization.isEmpty()) request.headers.emplace_back("Authorization", access.authorization);
  services_.http.send(request, job, [&quota = services_.quota, done](const auto& response) {
    done(textOf(meteredAnswer(response, u"text"_s, quota)));
  });
}

std::optional<QString> AITextTransformClient::extractText(const QByteArray& response) {
  return textIn(response, kMembers, "text"_L1);
}
