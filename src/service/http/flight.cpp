#include "service/http/flight.h"

#include <microhttpd.h>

#include <cstdio>

#include "service/log.h"

namespace {

/// Of bodies that are refused, as much is thrown away before the answer goes out.
constexpr qint64 kMostIgnored = 260'000'000;

}  // namespace

Flight::Flight(MHD_Connection* connection, Request request, ConnectionWatch::Line& line)
    : connection_(connection), request_(std::move(request)), line_(line), route_{.exchange = nullptr} {}

void Flight::route(const Router& router) {
  route_ = router.find(request_);
  line_.expectBody(begun_, 0);
}

std::optional<Response> Flight::earlyRefusal() {
  if (route_.exchange) return {};
  const qint64 body = request_.bodySize();
  const bool isAwaited = request_.header("expect").toLower() == "100-continue";
  if (body != 0 && body <= kMostIgnored && !isAwaited && !request_.isAmbiguous()) return {};
  return std::move(route_.exchange).error();
}

bool Flight::take(std::string_view bytes) {
  received_ += static_cast<qint64>(bytes.size());
  line_.expectBody(begun_, received_);
  if (route_.exchange && received_ > route_.maximumBody)
    route_.exchange = std::unexpected(Response::text(413, "The body is too large."));
  if (route_.exchange) (*route_.exchange)->take(bytes);
  return received_ <= kMostIgnored;
}

std::optional<Response> Flight::answer() {
  isAnswering_ = true;
  if (!route_.exchange) return std::move(route_.exchange).error();
  line_.wait();
  (*route_.exchange)->answer([flight = shared_from_this()](Response response) { flight->resume(std::move(response)); });
  const std::lock_guard lock(mutex_);
  if (response_) return std::exchange(response_, {});
  rests_ = true;
  MHD_suspend_connection(connection_);
  return {};
}

void Flight::resume(Response response) {
  const std::lock_guard lock(mutex_);
  response_ = std::move(response);
  if (rests_) MHD_resume_connection(connection_);
}

std::optional<Response> Flight::takeResponse() {
  const std::lock_guard lock(mutex_);
  return std::exchange(response_, {});
}

void Flight::log() const {
  const std::chrono::duration<double, std::milli> took = ConnectionWatch::Clock::now() - begun_;
  const QByteArray name = request_.caller.name.isEmpty() ? QByteArray("-") : request_.caller.name.toUtf8();
  logLine("%.8s %s %d in %lld out %lld %.1f ms %s %s", request_.method.toPercentEncoding().constData(),
          route_.label.constData(), status, static_cast<long long>(received_), static_cast<long long>(sent),
          took.count(), request_.address.constData(), name.constData());
}
