#include "core/net/http_client.h"

#include <QHostAddress>
#include <QNetworkAccessManager>
#include <QNetworkProxyFactory>
#include <QNetworkReply>
#include <QNetworkRequest>

#include <algorithm>

#include "core/net/http_exchange.h"

using namespace Qt::StringLiterals;

namespace {

/// What the system says, save for this computer itself: a proxy would not find its way back to it.
class SystemProxies final : public QNetworkProxyFactory {
 public:
  QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery& query) override {
    if (isLoopbackHost(query.peerHostName())) return {QNetworkProxy::NoProxy};
    return systemProxyForQuery(query);
  }
};

std::unique_ptr<QNetworkAccessManager> makeNetwork() {
  auto network = std::make_unique<QNetworkAccessManager>();
  network->setProxyFactory(new SystemProxies);
  return network;
}

}  // namespace

bool isLoopbackHost(const QString& host) { return host == "localhost"_L1 || QHostAddress(host).isLoopback(); }

std::optional<QByteArray> HttpResponse::header(QByteArrayView name) const {
  const auto named = [name](const auto& header) { return header.first.compare(name, Qt::CaseInsensitive) == 0; };
  const auto found = std::ranges::find_if(headers, named);
  return found == headers.end() ? std::nullopt : std::optional(found->second);
}

QByteArray HttpResponse::mediaType() const {
  const QByteArray type = header("Content-Type").value_or(QByteArray());
  return type.split(';').first().trimmed().toLower();
}

QString HttpError::description() const {
  switch (reason) {
    case Reason::timedOut:
      return u"The service did not answer in time."_s;
    case Reason::redirected:
      return u"The service sent the request on to another host, which is not followed."_s;
    case Reason::tooLarge:
      return u"The answer of the service is too large."_s;
    case Reason::notKept:
      return u"The answer of the service cannot be kept: %1"_s.arg(detail);
    case Reason::broken:
      return u"The connection broke off: %1"_s.arg(detail);
    case Reason::insecure:
      return u"The connection is not secure: %1"_s.arg(detail);
    case Reason::unreachable:
      break;
  }
  return u"The service cannot be reached: %1"_s.arg(detail);
}

QtHttpClient::QtHttpClient() = default;
QtHttpClient::~QtHttpClient() = default;

QNetworkReply* QtHttpClient::start(const HttpRequest& request) {
  if (!network_) network_ = makeNetwork();
  QNetworkRequest message(request.url);
  message.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::SameOriginRedirectPolicy);
  // What one service leaves behind must not reach another: no cookies, no passwords that were typed elsewhere.
  message.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
  message.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
  message.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
  for (const auto& [name, value] : request.headers) message.setRawHeader(name, value);
  if (!request.stream) return network_->sendCustomRequest(message, request.method, request.body);
  QNetworkReply* const reply = network_->sendCustomRequest(message, request.method, request.stream.get());
  // A reply that is broken off may read on until it is deleted.
  QObject::connect(reply, &QObject::destroyed, [stream = request.stream] {});
  return reply;
}

void QtHttpClient::sendAndForget(const HttpRequest& request) {
  QNetworkReply* reply = start(request);
  QObject::connect(reply, &QNetworkReply::finished, reply, &QObject::deleteLater);
  new HttpExchange(reply, request, [](const auto&) {}, reply);
}

void QtHttpClient::send(const HttpRequest& request, const JobRef& job, Answer answer) {
  if (!job.isRunning()) return;
  new HttpExchange(start(request), request, job.bind(std::move(answer)), job.scope());
}
