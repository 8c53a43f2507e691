#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <chrono>
#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "base/job.h"

class QIODevice;
class QNetworkAccessManager;
class QNetworkReply;

using HttpHeaders = std::vector<std::pair<QByteArray, QByteArray>>;

/// One request, as a value.
struct HttpRequest {
  QByteArray method;
  QUrl url;
  HttpHeaders headers{};
  QByteArray body{};
  /// The body of a request that is too large for memory, opened for reading; takes the place of `body`. Serves one
  /// request.
  std::shared_ptr<QIODevice> stream{};
  /// Told how much of the body has been sent, from 0 to 1, never less than before.
  std::function<void(double)> progress{};
  /// Told each piece of the body as it arrives, of an answer with a status of success; the whole comes at the end all
  /// the same.
  std::function<void(const QByteArray&)> received{};
  /// The media type of the answers that `received` is told of, in lower case; empty: of all.
  QByteArray receivedType{};
  /// Takes the body of an answer with a status of success, piece by piece as it arrives, in place of the response,
  /// which then has none; the body of another answer is dropped. Opened for writing. A piece that it does not take ends
  /// the exchange with its error.
  std::shared_ptr<QIODevice> sink{};
  /// The longest silence of the other side; zero: any.
  std::chrono::milliseconds timeout{0};
  /// The longest the whole exchange may take; zero: any.
  std::chrono::milliseconds deadline{0};
  /// The longest the answer may take once the body has been sent, so that an upload may be as slow as its line; zero:
  /// any.
  std::chrono::milliseconds answerDeadline{0};
  /// The longest body that is taken, in bytes; a longer one is an error.
  qint64 maximumAnswer = 4 * 1024 * 1024;
};

/// What came back, whatever its status.
struct HttpResponse {
  int status = 0;
  HttpHeaders headers;
  QByteArray body;

  bool isSuccess() const { return status >= 200 && status <= 299; }
  /// The value of the first header of that name, in any case of letters; none without it.
  std::optional<QByteArray> header(QByteArrayView name) const;
  /// The media type in lower case, without its parameters; empty when it is not said.
  QByteArray mediaType() const;
};

/// Why there is no response.
struct HttpError {
  enum class Reason { unreachable, timedOut, broken, insecure, redirected, tooLarge, notKept };
  Reason reason = Reason::unreachable;
  /// The system's own words; a credential is never among them.
  QString detail;

  QString description() const;
};

/// Sends requests. Main thread only.
class HttpClient {
 public:
  using Answer = std::function<void(std::expected<HttpResponse, HttpError>)>;

  virtual ~HttpClient() = default;

  /// Sends `request`, whose answer and failure nobody waits for.
  virtual void sendAndForget(const HttpRequest& request) = 0;
  /// Sends `request` and answers once, later. The end of `job` breaks the exchange off, without an answer.
  virtual void send(const HttpRequest& request, const JobRef& job, Answer answer) = 0;
};

/// HTTP by Qt. The network stack is loaded at the first request, not at start. Redirects to other hosts are not
/// followed, so that no credential travels there. The system's proxies hold, but not for this computer itself.
class QtHttpClient final : public HttpClient {
 public:
  QtHttpClient();
  ~QtHttpClient() override;

  void sendAndForget(const HttpRequest& request) override;
  void send(const HttpRequest& request, const JobRef& job, Answer answer) override;

 private:
  QNetworkReply* start(const HttpRequest& request);

  std::unique_ptr<QNetworkAccessManager> network_;
};

/// Whether `host` is this computer itself: "localhost" or a loopback address.
bool isLoopbackHost(const QString& host);
