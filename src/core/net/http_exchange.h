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
  void sent(qint64 bytes, qint64 total);
  void read();
  void finish();
  bool keep(const QByteArray& piece);
  void hand(const QByteArray& piece) const;
  HttpResponse response() const;
  void fail(HttpError error);
  void answer(std::expected<HttpResponse, HttpError> result);
  void drop();

  QPointer<QNetworkReply> reply_;
  std::function<void(double)> progress_;
  std::function<void(const QByteArray&)> received_;
  QByteArray receivedType_;
  double shownProgress_ = 0;
  HttpClient::Answer answer_;
  qint64 maximumAnswer_;
  qint64 taken_ = 0;
  QByteArray body_;
  /// Takes the body's place.
  std::shared_ptr<QIODevice> sink_;
  QTimer silence_;
  QTimer deadline_;
  /// Starts when the body has been sent.
  QTimer answerDeadline_;
};
