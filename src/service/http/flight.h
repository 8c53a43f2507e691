#pragma once

#include <mutex>
#include <optional>

#include "service/http/connection_watch.h"
#include "service/http/router.h"

struct MHD_Connection;

/// One request under way: from its head to the end of its answer. The server's thread feeds it; the answer may come
/// from any thread, and the connection rests meanwhile.
class Flight : public std::enable_shared_from_this<Flight> {
 public:
  Flight(MHD_Connection* connection, Request request, ConnectionWatch::Line& line);

  void route(const Router& router);
  /// The refusal that is to go out before the body comes; nothing: the body is taken, if only to be thrown away,
  /// because a client that is still sending does not see an answer.
  std::optional<Response> earlyRefusal();

  /// False: the client has sent so much more than it may that the connection is cut.
  bool take(std::string_view bytes);
  /// The body is whole. The answer, or nothing while the connection rests.
  std::optional<Response> answer();
  /// After the rest.
  std::optional<Response> takeResponse();
  bool hasBody() const { return request_.bodySize() != 0; }
  bool isAnswering() const { return isAnswering_; }

  ConnectionWatch::Line& line() { return line_; }
  /// One line on stderr; no header, no body, no secret of a link.
  void log() const;

  int status = 0;
  qint64 sent = 0;

 private:
  void resume(Response response);

  MHD_Connection* connection_;
  Request request_;
  ConnectionWatch::Line& line_;
  Router::Route route_;
  qint64 received_ = 0;
  bool isAnswering_ = false;
  const ConnectionWatch::Clock::time_point begun_ = ConnectionWatch::Clock::now();

  std::mutex mutex_;
  std::optional<Response> response_;
  bool rests_ = false;
};
