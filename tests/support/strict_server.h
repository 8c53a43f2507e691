#pragma once

#include <QTcpServer>
#include <QTcpSocket>

#include <functional>
#include <map>
#include <vector>

/// An HTTP server on loopback that takes nothing but well-formed requests of a known length, and answers them with raw
/// bytes of the test's choice.
class StrictServer : public QTcpServer {
 public:
  struct Request {
    QByteArray line;
    /// By name in lower case.
    std::map<QByteArray, QByteArray> headers;
    QByteArray body;
  };
  /// Bytes to send; the connection is closed after them unless `staysOpen`.
  struct Answer {
    QByteArray bytes;
    bool staysOpen = false;
  };

  StrictServer() {
    listen(QHostAddress::LocalHost);
    connect(this, &QTcpServer::newConnection, this, [this] {
      QTcpSocket* socket = nextPendingConnection();
      connect(socket, &QTcpSocket::readyRead, socket, [this, socket] { read(*socket); });
      connect(socket, &QTcpSocket::disconnected, socket, [this, socket] {
        ++closed;
        socket->deleteLater();
      });
    });
  }

  QUrl url(const QString& path) const {
    return QUrl(QStringLiteral("http://127.0.0.1:%1%2").arg(serverPort()).arg(path));
  }

  static QByteArray response(int status, const QByteArray& body, const QByteArray& headers = {}) {
    return "HTTP/1.1 " + QByteArray::number(status) +
           " Some Reason\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n" + headers + "\r\n" + body;
  }

  std::function<Answer(const Request&)> answer = [](const Request&) { return Answer{response(200, "{}")}; };
  std::vector<Request> requests;
  int malformed = 0;
  int closed = 0;

 private:
  void read(QTcpSocket& socket) {
    QByteArray& bytes = unfinished_[&socket];
    bytes += socket.readAll();
    const qsizetype end = bytes.indexOf("\r\n\r\n");
    if (end < 0) return;
    Request request = head(bytes.left(end));
    const qsizetype length = request.headers["content-length"].toLongLong();
    if (bytes.size() - end - 4 < length) return;
    request.body = bytes.mid(end + 4);
    if (request.body.size() != length) ++malformed;
    unfinished_.erase(&socket);
    requests.push_back(request);
    const Answer reply = answer(request);
    socket.write(reply.bytes);
    if (!reply.staysOpen) socket.disconnectFromHost();
  }

  Request head(const QByteArray& text) {
    Request request;
    for (const QByteArray& line : text.split('\n')) {
      const qsizetype colon = line.indexOf(':');
      if (request.line.isEmpty())
        request.line = line.trimmed();
      else if (colon > 0)
        request.headers[line.left(colon).toLower()] = line.mid(colon + 1).trimmed();
      else
        ++malformed;
    }
    if (!request.line.endsWith(" HTTP/1.1")) ++malformed;
    return request;
  }

  std::map<QTcpSocket*, QByteArray> unfinished_;
};
