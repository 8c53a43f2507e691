#include "core/net/http_client.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>

QtHttpClient::QtHttpClient() = default;
QtHttpClient::~QtHttpClient() = default;

void QtHttpClient::sendAndForget(const HttpRequest& request) {
  if (!network_) network_ = std::make_unique<QNetworkAccessManager>();
  QNetworkRequest message(request.url);
  message.setTransferTimeout(static_cast<int>(request.timeout.count()));
  message.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::SameOriginRedirectPolicy);
  for (const auto& [name, value] : request.headers) message.setRawHeader(name, value);
  QNetworkReply* reply = network_->sendCustomRequest(message, request.method, request.body);
  QObject::connect(reply, &QNetworkReply::finished, reply, &QObject::deleteLater);
}
