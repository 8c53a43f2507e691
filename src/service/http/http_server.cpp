#include "service/http/http_server.h"

#include <arpa/inet.h>
#include <microhttpd.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <array>
#include <utility>

#include "service/log.h"

namespace {

/// More than cores: a thread that waits for the disk must not stop the others.
constexpr unsigned kThreads = 8;
/// For a request's head and the pieces of its body, in bytes.
constexpr std::size_t kConnectionMemory = 64 * 1024;

/// What the library holds of a body that is still being made.
struct Streaming {
  std::shared_ptr<BodyStream> stream;
  std::shared_ptr<Flight> flight;

  static ssize_t read(void* context, std::uint64_t, char* room, std::size_t size) {
    const auto& [stream, flight] = *static_cast<Streaming*>(context);
    const auto count = stream->read({room, size});
    if (!count) return MHD_CONTENT_READER_END_OF_STREAM;
    flight->sent += static_cast<qint64>(*count);
    if (*count > 0) flight->line().expectDelivery(static_cast<long long>(*count));
    return static_cast<ssize_t>(*count);
  }
  static void free(void* context) {
    const std::unique_ptr<Streaming> owned(static_cast<Streaming*>(context));
    owned->stream->detach();
  }
};

MHD_Response* replyOf(Response& response, const std::shared_ptr<Flight>& flight) {
  constexpr std::size_t kBlock = 4096;
  if (response.stream)
    return MHD_create_response_from_callback(MHD_SIZE_UNKNOWN, kBlock, Streaming::read,
                                             new Streaming{response.stream, flight}, Streaming::free);
  if (response.file)
    return MHD_create_response_from_fd_at_offset64(static_cast<std::uint64_t>(response.file->size),
                                                   response.file->file.release(),
                                                   static_cast<std::uint64_t>(response.file->offset));
  // The library copies the body; it takes it as writable for the other modes only.
  return MHD_create_response_from_buffer(static_cast<std::size_t>(response.body.size()),
                                         const_cast<char*>(response.body.constData()), MHD_RESPMEM_MUST_COPY);
}

MHD_Result queue(MHD_Connection* connection, const std::shared_ptr<Flight>& owner, Response response, bool isLast) {
  Flight& flight = *owner;
  flight.status = response.status;
  flight.sent = response.file ? response.file->size : response.body.size();
  flight.line().expectDelivery(flight.sent);
  MHD_Response* const reply = replyOf(response, owner);
  if (!reply) return MHD_NO;
  if (!response.contentType.isEmpty())
    MHD_add_response_header(reply, MHD_HTTP_HEADER_CONTENT_TYPE, response.contentType.constData());
  for (const auto& [name, value] : std::as_const(response.headers))
    MHD_add_response_header(reply, name.constData(), value.constData());
  MHD_add_response_header(reply, "X-Content-Type-Options", "nosniff");
  if (isLast) MHD_add_response_header(reply, MHD_HTTP_HEADER_CONNECTION, "close");
  const MHD_Result queued = MHD_queue_response(connection, static_cast<unsigned>(response.status), reply);
  MHD_destroy_response(reply);
  return queued;
}

QByteArray text(const sockaddr* address) {
  std::array<char, INET6_ADDRSTRLEN> buffer{};
  const void* const bytes = address->sa_family == AF_INET6
                                ? static_cast<const void*>(&reinterpret_cast<const sockaddr_in6*>(address)->sin6_addr)
                                : &reinterpret_cast<const sockaddr_in*>(address)->sin_addr;
  inet_ntop(address->sa_family, bytes, buffer.data(), buffer.size());
  const QByteArray name(buffer.data());
  return name.startsWith("::ffff:") ? name.mid(7) : name;
}

bool fill(sockaddr_storage& address, const HttpServer::Options& options) {
  auto* const four = reinterpret_cast<sockaddr_in*>(&address);
  auto* const six = reinterpret_cast<sockaddr_in6*>(&address);
  const QByteArray name = options.address.toLatin1();
  if (inet_pton(AF_INET, name.constData(), &four->sin_addr) == 1) {
    four->sin_family = AF_INET;
    four->sin_port = htons(options.port);
    return true;
  }
  six->sin6_family = AF_INET6;
  six->sin6_port = htons(options.port);
  return inet_pton(AF_INET6, name.constData(), &six->sin6_addr) == 1;
}

}  // namespace

/// What the library calls, with the server as context.
struct HttpServer::Callbacks {
  using FlightPointer = std::shared_ptr<Flight>;

  static MHD_Result answer(HttpServer& server, MHD_Connection* connection, const FlightPointer& owner) {
    Flight& flight = *owner;
    const bool hasRested = flight.isAnswering();
    // Counted before the connection rests: from then on it may go on at any moment.
    if (!hasRested) server.count(0, +1);
    if (!hasRested && server.isStopping_) {
      server.count(0, -1);
      return MHD_NO;
    }
    std::optional<Response> response = hasRested ? flight.takeResponse() : flight.answer();
    if (!response && !hasRested) return MHD_YES;
    // With a body that is still being made the connection rests time and again.
    if (response && response->stream)
      attach(server, connection, flight, *response->stream);
    else
      server.count(0, -1);
    return response ? queue(connection, owner, std::move(*response), server.isDraining_) : MHD_NO;
  }

  static void attach(HttpServer& server, MHD_Connection* connection, Flight& flight, BodyStream& stream) {
    stream.attach({.rest =
                       [connection, &flight] {
                         flight.line().wait();
                         MHD_suspend_connection(connection);
                       },
                   .resume = [connection] { MHD_resume_connection(connection); },
                   .ended = [&server] { server.count(0, -1); }});
  }

  static MHD_Result begin(HttpServer& server, MHD_Connection* connection, Request request, void** state) {
    const auto* const info = MHD_get_connection_info(connection, MHD_CONNECTION_INFO_SOCKET_CONTEXT);
    auto* const line = static_cast<ConnectionWatch::Line*>(info->socket_context);
    request.gone = line->gone();
    server.readHeaders(connection, request);
    auto* const flight = new FlightPointer(std::make_shared<Flight>(connection, std::move(request), *line));
    *state = flight;
    server.count(+1, 0);
    (*flight)->route(server.router_);
    std::optional<Response> refusal = (*flight)->earlyRefusal();
    return refusal ? queue(connection, *flight, std::move(*refusal), (*flight)->hasBody()) : MHD_YES;
  }

  /// With the head of a request, with each piece of its body, at its end, and after a rest.
  static constexpr auto handle = [](void* context, MHD_Connection* connection, const char* url, const char* method,
                                    const char*, const char* data, std::size_t* size, void** state) -> MHD_Result {
    auto& server = *static_cast<HttpServer*>(context);
    if (!*state) return begin(server, connection, {.method = method, .path = url, .headers = {}, .address = {}}, state);
    const FlightPointer& flight = *static_cast<FlightPointer*>(*state);
    if (*size == 0) return answer(server, connection, flight);
    const bool goesOn = flight->take({data, *size});
    *size = 0;
    return goesOn ? MHD_YES : MHD_NO;
  };

  static void complete(void* context, MHD_Connection*, void** state, MHD_RequestTerminationCode code) {
    const std::unique_ptr<FlightPointer> flight(static_cast<FlightPointer*>(std::exchange(*state, nullptr)));
    if (!flight) return;
    if (code != MHD_REQUEST_TERMINATED_COMPLETED_OK) (*flight)->line().giveUp();
    (*flight)->line().expectHead();
    (*flight)->log();
    static_cast<HttpServer*>(context)->count(-1, 0);
  }

  static void connection(void* context, MHD_Connection* connection, void** line, MHD_ConnectionNotificationCode code) {
    ConnectionWatch& watch = static_cast<HttpServer*>(context)->watch_;
    if (code == MHD_CONNECTION_NOTIFY_STARTED)
      *line = watch.open(MHD_get_connection_info(connection, MHD_CONNECTION_INFO_CONNECTION_FD)->connect_fd);
    else
      watch.close(static_cast<ConnectionWatch::Line*>(*line));
  }

  static MHD_Result header(void* context, MHD_ValueKind, const char* name, const char* value) {
    auto& headers = static_cast<Request*>(context)->headers;
    const QByteArray key = QByteArray(name).toLower();
    if (value && !headers.contains(key)) headers.insert(key, value);
    return MHD_YES;
  }
};

HttpServer::HttpServer(const Router& router, Options options)
    : router_(router), options_(std::move(options)), watch_(options_.patience) {}

HttpServer::~HttpServer() = default;

void HttpServer::Stop::operator()(MHD_Daemon* daemon) const { MHD_stop_daemon(daemon); }

bool HttpServer::start() {
  sockaddr_storage address{};
  if (!fill(address, options_)) return false;
  const auto family = address.ss_family == AF_INET6 ? unsigned{MHD_USE_IPv6} : 0U;
  // Not epoll: with it the library now and then does not see that a client has gone in the middle of a body, whose file
  // and connection then stay for as long as our patience lasts.
  daemon_.reset(MHD_start_daemon(
      MHD_USE_POLL_INTERNAL_THREAD | MHD_ALLOW_SUSPEND_RESUME | family, options_.port, nullptr, nullptr,
      Callbacks::handle, this, MHD_OPTION_SOCK_ADDR, reinterpret_cast<const sockaddr*>(&address),
      MHD_OPTION_LISTENING_ADDRESS_REUSE, 1U, MHD_OPTION_STRICT_FOR_CLIENT, 1, MHD_OPTION_NOTIFY_COMPLETED,
      Callbacks::complete, this, MHD_OPTION_NOTIFY_CONNECTION, Callbacks::connection, this, MHD_OPTION_THREAD_POOL_SIZE,
      kThreads, MHD_OPTION_CONNECTION_LIMIT, options_.connections, MHD_OPTION_PER_IP_CONNECTION_LIMIT,
      options_.connectionsPerAddress, MHD_OPTION_CONNECTION_TIMEOUT, static_cast<unsigned>(options_.patience.count()),
      MHD_OPTION_CONNECTION_MEMORY_LIMIT, kConnectionMemory, MHD_OPTION_END));
  return daemon_ != nullptr;
}

std::uint16_t HttpServer::port() const {
  const MHD_DaemonInfo* info = MHD_get_daemon_info(daemon_.get(), MHD_DAEMON_INFO_BIND_PORT);
  return info ? info->port : 0;
}

void HttpServer::readHeaders(MHD_Connection* connection, Request& request) const {
  MHD_get_connection_values(connection, MHD_HEADER_KIND, Callbacks::header, &request);
  request.address = clientAddress(connection, request);
}

QByteArray HttpServer::clientAddress(MHD_Connection* connection, const Request& request) const {
  QByteArray peer = text(MHD_get_connection_info(connection, MHD_CONNECTION_INFO_CLIENT_ADDRESS)->client_addr);
  if (!options_.proxies.contains(peer)) return peer;
  // A proxy adds whom it saw at the end; what stands before that the client may have made up.
  QByteArray named = request.header("x-forwarded-for").split(',').last().trimmed();
  in6_addr parsed{};
  const bool isAddress =
      inet_pton(AF_INET, named.constData(), &parsed) == 1 || inet_pton(AF_INET6, named.constData(), &parsed) == 1;
  return isAddress ? named : peer;
}

void HttpServer::count(int underWay, int resting) {
  const std::lock_guard lock(mutex_);
  underWay_ += underWay;
  resting_ += resting;
  ended_.notify_all();
}

void HttpServer::drain(std::chrono::seconds bound) {
  isDraining_ = true;
  const int listening = MHD_quiesce_daemon(daemon_.get());
  // Who comes now is refused at once instead of waiting in the queue.
  if (listening != MHD_INVALID_SOCKET) shutdown(listening, SHUT_RDWR);
  {
    std::unique_lock lock(mutex_);
    if (!ended_.wait_for(lock, bound, [this] { return underWay_ == 0; }))
      logLine("stopping with %d requests under way", underWay_);
    isStopping_ = true;
    watch_.giveUp();
    // A connection that waits for an endpoint cannot be closed.
    ended_.wait(lock, [this] { return resting_ == 0; });
  }
  daemon_.reset();
  if (listening != MHD_INVALID_SOCKET) ::close(listening);
}
