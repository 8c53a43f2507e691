#pragma once

#include <QIODevice>

#include <deque>

#include "core/net/http_client.h"

/// Keeps the requests that would be sent; those that want an answer wait for the test to give it.
class FakeHttp final : public HttpClient {
 public:
  void sendAndForget(const HttpRequest& request) override { sent.push_back(request); }
  void send(const HttpRequest& request, const JobRef& job, Answer answer) override {
    sent.push_back(request);
    waiting.push_back(job.bind(std::move(answer)));
    receivers_.push_back(job.bind([received = request.received, sink = request.sink](const QByteArray& piece) {
      if (received) received(piece);
      if (sink) sink->write(piece);
    }));
    hasSink_.push_back(request.sink != nullptr);
  }

  /// Lets a piece of the answer to the oldest request arrive.
  void deliver(const QByteArray& piece) { receivers_.front()(piece); }

  /// Answers the oldest request that waits; false without one. A sink takes the body of a success.
  bool answer(std::expected<HttpResponse, HttpError> result) {
    if (waiting.empty()) return false;
    if (hasSink_.front() && result && result->isSuccess()) deliver(std::exchange(result->body, {}));
    hasSink_.pop_front();
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
  std::deque<bool> hasSink_;
};
