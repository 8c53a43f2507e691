#pragma once

#include <cstdint>
#include <memory>

#include "service/router.h"

struct MHD_Daemon;

/// Listens on the loopback address and answers by the router, on a pool of threads. Every request leaves one line on
/// stderr: method, path, status, time; never a header or a body.
class HttpServer {
 public:
  explicit HttpServer(const Router& router) : router_(router) {}

  /// Port 0: any free one. False when it cannot listen.
  bool start(std::uint16_t port);
  std::uint16_t port() const;

 private:
  struct Stop {
    /// Waits for the answers under way.
    void operator()(MHD_Daemon* daemon) const;
  };

  const Router& router_;
  std::unique_ptr<MHD_Daemon, Stop> daemon_;
};
