#include "core/net/http_exchange.h"

#include <QNetworkReply>

#include <algorithm>

using namespace std::chrono_literals;

namespace {

/// What is read at once.
constexpr qint64 kPiece = 1024 * 1024;

HttpError errorOf(const QNetworkReply& reply) {
  using Reason = HttpError::Reason;
  switch (reply.error()) {
    case QNetworkReply::InsecureRedirectError:
    case QNetworkReply::TooManyRedirectsError:
      return {Reason::redirected, {}};
    case QNetworkReply::SslHandshakeFailedError:
      return {Reason::insecure, reply.errorString()};
    case QNetworkReply::TimeoutError:
      return {Reason::timedOut, {}};
    default:
      break;
  }
  const bool hasBegun = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).isValid();
  const bool isCut = hasBegun || reply.error() == QNetworkReply::RemoteHostClosedError;
  return {isCut ? Reason::broken : Reason::unreachable, reply.errorString()};
}

int statusOf(const QNetworkReply& reply) { return reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(); }

/// Qt counts a status of 400 and above among the errors, and a redirect that does not say where to; these are answers
/// like any other, if they came whole.
bool isAnswered(const QNetworkReply& reply) {
  if (reply.error() == QNetworkReply::NoError) return true;
  if (reply.error() == QNetworkReply::ProtocolUnknownError) return statusOf(reply) >= 300;
  return statusOf(reply) >= 400 && reply.error() != QNetworkReply::RemoteHostClosedError;
}

}  // namespace

HttpExchange::HttpExchange(QNetworkReply* reply, const HttpRequest& request, HttpClient::Answer answer, QObject* parent)
    : QObject(parent),
      reply_(reply),
      progress_(request.progress),
      received_(request.received),
      receivedType_(request.receivedType),
      answer_(std::move(answer)),
      maximumAnswer_(request.maximumAnswer),
      sink_(request.sink) {
  // Qt's own limit ends a request as if somebody had cancelled it; with timers of our own the reason is known.
  const auto limit = [this](QTimer& timer, std::chrono::milliseconds length) {
    timer.setSingleShot(true);
    timer.setInterval(length);
    connect(&timer, &QTimer::timeout, this, [this] { fail({HttpError::Reason::timedOut, {}}); });
  };
  limit(silence_, request.timeout);
  limit(deadline_, request.deadline);
  limit(answerDeadline_, request.answerDeadline);
  if (request.timeout > 0ms) silence_.start();
  if (request.deadline > 0ms) deadline_.start();
  reply_->setReadBufferSize(maximumAnswer_ + 1);
  // Qt forgets a limit that is set before the connection is there, and takes in all that comes faster than it is kept.
  if (sink_) connect(reply, &QNetworkReply::metaDataChanged, this, [this] { reply_->setReadBufferSize(kPiece); });
  connect(reply, &QNetworkReply::uploadProgress, this, &HttpExchange::sent);
  connect(reply, &QNetworkReply::readyRead, this, &HttpExchange::read);
  connect(reply, &QNetworkReply::finished, this, &HttpExchange::finish);
}

HttpExchange::~HttpExchange() { drop(); }

void HttpExchange::heard() {
  if (silence_.isActive()) silence_.start();
}

/// Qt says "nothing of nothing" when the answer is there, and begins anew after a redirect.
void HttpExchange::sent(qint64 bytes, qint64 total) {
  heard();
  if (total <= 0) return;
  if (bytes == total && answerDeadline_.interval() > 0 && !answerDeadline_.isActive()) answerDeadline_.start();
  if (!progress_) return;
  shownProgress_ = std::max(shownProgress_, static_cast<double>(bytes) / static_cast<double>(total));
  progress_(shownProgress_);
}

void HttpExchange::read() {
  heard();
  for (;;) {
    const QByteArray piece = reply_->read(std::min(kPiece, maximumAnswer_ + 1 - taken_));
    if (piece.isEmpty()) return;
    taken_ += piece.size();
    if (taken_ > maximumAnswer_) return fail({HttpError::Reason::tooLarge, {}});
    if (!keep(piece)) return fail({HttpError::Reason::notKept, sink_->errorString()});
    if (received_) hand(piece);
  }
}

bool HttpExchange::keep(const QByteArray& piece) {
  if (sink_) return !HttpResponse{statusOf(*reply_), {}, {}}.isSuccess() || sink_->write(piece) == piece.size();
  body_ += piece;
  return true;
}

void HttpExchange::hand(const QByteArray& piece) const {
  const HttpResponse head{statusOf(*reply_), {reply_->rawHeaderPairs().begin(), reply_->rawHeaderPairs().end()}, {}};
  if (head.isSuccess() && (receivedType_.isEmpty() || head.mediaType() == receivedType_)) received_(piece);
}

void HttpExchange::finish() {
  read();
  if (!reply_) return;
  if (isAnswered(*reply_))
    answer(response());
  else
    fail(errorOf(*reply_));
}

HttpResponse HttpExchange::response() const {
  return {statusOf(*reply_), {reply_->rawHeaderPairs().begin(), reply_->rawHeaderPairs().end()}, body_};
}

void HttpExchange::fail(HttpError error) { answer(std::unexpected(std::move(error))); }

void HttpExchange::answer(std::expected<HttpResponse, HttpError> result) {
  drop();
  silence_.stop();
  deadline_.stop();
  answerDeadline_.stop();
  deleteLater();
  if (const auto answer = std::exchange(answer_, nullptr)) answer(std::move(result));
}

void HttpExchange::drop() {
  if (!reply_) return;
  QNetworkReply* const reply = reply_;
  reply_ = nullptr;
  // abort() says "finished" at once, which must not come back here.
  reply->disconnect(this);
  if (reply->isRunning()) reply->abort();
  reply->deleteLater();
}
