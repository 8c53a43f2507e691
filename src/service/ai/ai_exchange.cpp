#include "service/ai/ai_exchange.h"

#include <QJsonDocument>

#include "service/links/form_exchange.h"
#include "service/log.h"

using namespace Qt::StringLiterals;

namespace {

QByteArray compact(const QJsonObject& object) { return QJsonDocument(object).toJson(QJsonDocument::Compact); }

QByteArray event(const QByteArray& name, const QJsonObject& data) {
  return "event: " + name + "\ndata: " + compact(data) + "\n\n";
}

bool takesEvents(const Request& request) {
  const QByteArray accepted = request.header("accept").toLower();
  return accepted.contains("text/event-stream");
}

Response busy() {
  Response response = Response::text(503, "Too many questions at once; try again in a moment.");
  response.add("Retry-After", "5");
  return response;
}

Response refusal(const Quota::Refused& refused) {
  if (const auto* standing = std::get_if<Standing>(&refused)) return standing->refusal();
  return FormExchange::storageFailure(std::get<StorageError>(refused));
}

int statusOf(AIError::Reason reason) { return reason == AIError::Reason::setup ? 503 : 502; }

}  // namespace

/// One answer on its way out: whole, or as events from the first piece on.
class AIExchange::Delivery {
 public:
  explicit Delivery(const Reply& reply) : reply_(reply) {}
  ~Delivery() {
    if (stream_) stream_->end();
  }
  Delivery(const Delivery&) = delete;
  Delivery& operator=(const Delivery&) = delete;

  bool hasBegun() const { return stream_ != nullptr; }
  void piece(const QString& text, const AIExchange& exchange) {
    if (!stream_) begin(exchange);
    stream_->write(event("delta", {{u"text"_s, text}}));
  }
  void endWith(const QByteArray& last) { stream_->write(last); }
  void whole(Response response) { reply_(std::move(response)); }

 private:
  void begin(const AIExchange& exchange) {
    stream_ = std::make_shared<BodyStream>();
    Response head{.status = 200, .contentType = "text/event-stream", .stream = stream_};
    head.add("Cache-Control", "no-store");
    // Proxies that would hold pieces back.
    head.add("X-Accel-Buffering", "no");
    reply_(exchange.described(std::move(head)));
  }

  const Reply& reply_;
  std::shared_ptr<BodyStream> stream_;
};

AIExchange::AIExchange(const AIServices& services, Terms terms, const Request& request)
    : services_(services),
      terms_(std::move(terms)),
      limit_(std::min(terms_.limit, services.longest)),
      caller_(request.caller),
      gone_(request.gone),
      isStream_(terms_.mayStream && takesEvents(request)) {}

Response AIExchange::described(Response response) const {
  if (standing_) standing_->describe(response);
  return response;
}

void AIExchange::answer(const Reply& reply) {
  deadline_ = std::chrono::steady_clock::now() + limit_;
  if (auto body = read(); !body) return reply(std::move(body.error()));
  const auto provider = services_.providers.current();
  if (!provider) return reply(Response::text(503, provider.error().text.toUtf8()));
  provider_ = *provider;
  services_.workers.start([this, reply] { reserve(reply); });
}

void AIExchange::reserve(const Reply& reply) {
  if (!terms_.metric.isEmpty()) {
    auto reserved = services_.quota.reserve(caller_, terms_.metric, QDateTime::currentDateTimeUtc());
    if (!reserved) return reply(refusal(reserved.error()));
    standing_ = reserved->standing();
    reservation_.emplace(std::move(*reserved));
  }
  // With less than a quarter of its time it would be asked for nothing.
  const bool isStarted = services_.desk.start({.owner = caller_.owner,
                                               .work = [this, reply] { run(reply); },
                                               .turnAway = [this, reply] { turnAway(reply); },
                                               .latest = deadline_ - std::chrono::milliseconds(limit_) / 4,
                                               .gone = gone_});
  if (!isStarted) turnAway(reply);
}

void AIExchange::turnAway(const Reply& reply) {
  reservation_.reset();
  reply(described(busy()));
}

void AIExchange::run(const Reply& reply) {
  Delivery delivery(reply);
  AICall call{.limit = limit_, .deadline = deadline_, .gone = gone_, .onPiece = {}};
  if (isStream_) {
    // An answer that has begun will be counted.
    if (standing_) ++standing_->used;
    call.onPiece = [&](const QString& text) { delivery.piece(text, *this); };
  }
  if (const auto answer = work(*provider_, call))
    succeed(*answer, delivery);
  else
    fail(answer.error(), delivery);
}

void AIExchange::succeed(const QJsonObject& answer, Delivery& delivery) {
  if (reservation_) {
    const auto counted = reservation_->commit();
    // There is an answer all the same.
    if (counted)
      standing_ = *counted;
    else
      logLine("storage: %s", qPrintable(counted.error().detail));
  }
  if (delivery.hasBegun()) return delivery.endWith(event("done", answer));
  delivery.whole(described({.status = 200, .body = compact(answer)}));
}

void AIExchange::fail(const AIError& error, Delivery& delivery) {
  const bool wasAbandoned = error.reason == AIError::Reason::abandoned;
  // Who goes away in the middle has had what he read.
  if (reservation_ && wasAbandoned && delivery.hasBegun()) std::ignore = reservation_->commit();
  if (standing_ && isStream_) --standing_->used;
  reservation_.reset();
  if (delivery.hasBegun()) return delivery.endWith(event("error", {{u"error"_s, error.text}}));
  delivery.whole(described(Response::text(statusOf(error.reason), error.text.toUtf8())));
}
