#include "service/http_server.h"

#include <arpa/inet.h>
#include <microhttpd.h>
#include <netinet/in.h>

#include <chrono>
#include <cstdio>
#include <memory>

namespace {

constexpr unsigned kThreads = 4;
constexpr unsigned kConnections = 128;
/// Seconds of silence after which a connection is dropped.
constexpr unsigned kSilence = 30;
/// For the head of a request, in bytes.
constexpr std::size_t kHeadMemory = 32 * 1024;

/// One request under way.
struct Exchange {
  Request request;
  Router::Route route;
  int status = 0;
  bool isTooLarge = false;
  std::chrono::steady_clock::time_point begun = std::chrono::steady_clock::now();
};

MHD_Result queue(MHD_Connection* connection, Exchange& exchange, const Response& response) {
  exchange.status = response.status;
  // The library copies the body; it takes it as writable for the other modes only.
  MHD_Response* const reply =
      MHD_create_response_from_buffer(static_cast<std::size_t>(response.body.size()),
                                      const_cast<char*>(response.body.constData()), MHD_RESPMEM_MUST_COPY);
  if (!response.contentType.isEmpty())
    MHD_add_response_header(reply, MHD_HTTP_HEADER_CONTENT_TYPE, response.contentType.constData());
  MHD_add_response_header(reply, "X-Content-Type-Options", "nosniff");
  const MHD_Result queued = MHD_queue_response(connection, static_cast<unsigned>(response.status), reply);
  MHD_destroy_response(reply);
  return queued;
}

MHD_Result begin(MHD_Connection* connection, const Router& router, Exchange& exchange) {
  const char* header = MHD_lookup_connection_value(connection, MHD_HEADER_KIND, MHD_HTTP_HEADER_AUTHORIZATION);
  exchange.route = router.find(exchange.request.method, exchange.request.path, QByteArray(header));
  return exchange.route.endpoint ? MHD_YES : queue(connection, exchange, exchange.route.refusal);
}

void take(Exchange& exchange, const char* data, std::size_t size) {
  const qsizetype wanted = exchange.request.body.size() + static_cast<qsizetype>(size);
  if (wanted > exchange.route.endpoint->maximumBody())
    exchange.isTooLarge = true;
  else
    exchange.request.body.append(data, static_cast<qsizetype>(size));
}

MHD_Result proceed(MHD_Connection* connection, Exchange& exchange, const char* data, std::size_t& size) {
  if (size > 0) {
    take(exchange, data, size);
    size = 0;
    return MHD_YES;
  }
  if (exchange.isTooLarge) return queue(connection, exchange, Response::text(413, "The body is too large."));
  return queue(connection, exchange, exchange.route.endpoint->answer(exchange.request));
}

/// Called with the head of a request, with each piece of its body, and at its end.
constexpr auto kHandle = [](void* context, MHD_Connection* connection, const char* url, const char* method, const char*,
                            const char* data, std::size_t* size, void** state) -> MHD_Result {
  if (*state) return proceed(connection, *static_cast<Exchange*>(*state), data, *size);
  auto* exchange = new Exchange{.request = {method, url, {}}, .route = {}};
  *state = exchange;
  return begin(connection, *static_cast<const Router*>(context), *exchange);
};

void finish(void*, MHD_Connection*, void** state, MHD_RequestTerminationCode) {
  const std::unique_ptr<Exchange> exchange(static_cast<Exchange*>(*state));
  if (!exchange) return;
  const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - exchange->begun;
  const QByteArray path = exchange->request.path.left(200).toPercentEncoding("/");
  std::fprintf(stderr, "%.8s %s %d %.1f ms\n", exchange->request.method.constData(), path.constData(), exchange->status,
               took.count());
}

}  // namespace

void HttpServer::Stop::operator()(MHD_Daemon* daemon) const { MHD_stop_daemon(daemon); }

bool HttpServer::start(std::uint16_t port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(port);
  void* const router = const_cast<Router*>(&router_);
  daemon_.reset(MHD_start_daemon(MHD_USE_AUTO | MHD_USE_INTERNAL_POLLING_THREAD, port, nullptr, nullptr, kHandle,
                                 router, MHD_OPTION_SOCK_ADDR, reinterpret_cast<const sockaddr*>(&address),
                                 MHD_OPTION_NOTIFY_COMPLETED, finish, nullptr, MHD_OPTION_THREAD_POOL_SIZE, kThreads,
                                 MHD_OPTION_CONNECTION_LIMIT, kConnections, MHD_OPTION_CONNECTION_TIMEOUT, kSilence,
                                 MHD_OPTION_CONNECTION_MEMORY_LIMIT, kHeadMemory, MHD_OPTION_END));
  return daemon_ != nullptr;
}

std::uint16_t HttpServer::port() const {
  const MHD_DaemonInfo* info = MHD_get_daemon_info(daemon_.get(), MHD_DAEMON_INFO_BIND_PORT);
  return info ? info->port : 0;
}
