#pragma once

#include <deque>

#include "core/net/http_client.h"

/// Keeps the requests that would be sent; those that want an answer wait for the test to give it.
class FakeHttp final : public HttpClient {
 public:
  void sendAndForget(const HttpRequest& request) override { sent.push_back(request); }
  void send(const HttpRequest& request, const JobRef& job, Answer answer) override {
    sent.push_back(request);
    waiting.push_back(job.bind(std::move(answer)));
    receivers_.push_back(job.bind([received = request.received](const QByteArray& piece) {
      if (received) received(piece);
    }));
  }

  /// Lets a piece of the answer to the oldest request arrive.
  void deliver(const QByteArray& piece) { receivers_.front()(piece); }

  /// Answers the oldest request that waits; false without one.
  bool answer(const std::expected<HttpResponse, HttpError>& result) {
    if (waiting.empty()) return false;
    const Answer oldest = std::move(waiting.front());
    waiting.pop_front();
    receivers_.pop_front();
    oldest(result);
    return true;
  }
  bool answer(int status, const QByteArray& body) { return answer(HttpResponse{status, {}, body}); }

  std::vector<HttpRequest> sent;
  std::deque<Answer> waiting;

 private:
  std::deque<std::function<void(const QByteArray&)>> receivers_;
};
