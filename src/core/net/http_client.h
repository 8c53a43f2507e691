#pragma once

#include <QByteArray>
#include <QUrl>

#include <chrono>
#include <memory>
#include <utility>
#include <vector>

class QNetworkAccessManager;

/// One request, as a value.
struct HttpRequest {
  QByteArray method;
  QUrl url;
  std::vector<std::pair<QByteArray, QByteArray>> headers;
  QByteArray body;
  std::chrono::milliseconds timeout{0};
};

/// Sends requests. Main thread only.
class HttpClient {
 public:
  virtual ~HttpClient() = default;

  /// Sends `request`, whose answer and failure nobody waits for.
  virtual void sendAndForget(const HttpRequest& request) = 0;
};

/// HTTP by Qt. The network stack is loaded at the first request, not at start. Redirects to other hosts are not
/// followed.
class QtHttpClient final : public HttpClient {
 public:
  QtHttpClient();
  ~QtHttpClient() override;

  void sendAndForget(const HttpRequest& request) override;

 private:
  std::unique_ptr<QNetworkAccessManager> network_;
};
