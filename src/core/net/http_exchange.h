#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>

#include "core/net/http_client.h"

class QNetworkReply;

/// One exchange under way: gathers the body within its bound, watches the clock, and answers once. Its end, however it
/// comes, ends the reply too.
class HttpExchange : public QObject {
  Q_OBJECT

 public:
  HttpExchange(QNetworkReply* reply, const HttpRequest& request, HttpClient::Answer answer, QObject* parent);
  ~HttpExchange() override;

 private:
  void heard();
  void read();
  void finish();
  HttpResponse response() const;
  void fail(HttpError error);
  void answer(std::expected<HttpResponse, HttpError> result);
  void drop();

  QPointer<QNetworkReply> reply_;
  HttpClient::Answer answer_;
  qint64 maximumAnswer_;
  QByteArray body_;
  QTimer silence_;
  QTimer deadline_;
};
