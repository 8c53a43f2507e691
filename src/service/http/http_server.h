#pragma once

#include <QSet>
#include <QString>

#include <atomic>
#include <condition_variable>
#include <cstdint>

#include "service/http/flight.h"

struct MHD_Daemon;

/// Listens and answers by the router, on a pool of threads.
class HttpServer {
 public:
  struct Options {
    /// "127.0.0.1" or "::1".
    QString address;
    /// 0: any free one.
    std::uint16_t port = 0;
    unsigned connections = 1024;
    unsigned connectionsPerAddress = 512;
    std::chrono::seconds patience{30};
    /// Proxies that are believed when they name the client.
    QSet<QByteArray> proxies = {};
  };

  HttpServer(const Router& router, Options options);
  ~HttpServer();

  /// False when it cannot listen.
  bool start();
  std::uint16_t port() const;
  /// Takes no new connection, finishes what is under way, at most for `bound`, and stops. What the endpoints work on
  /// themselves is always waited for.
  void drain(std::chrono::seconds bound);

 private:
  struct Callbacks;

  struct Stop {
    void operator()(MHD_Daemon* daemon) const;
  };

  void readHeaders(MHD_Connection* connection, Request& request) const;
  QByteArray clientAddress(MHD_Connection* connection, const Request& request) const;
  void count(int underWay, int resting);

  const Router& router_;
  const Options options_;
  ConnectionWatch watch_;
  std::atomic<bool> isDraining_ = false;
  /// Nothing new is begun with an endpoint.
  std::atomic<bool> isStopping_ = false;
  std::mutex mutex_;
  std::condition_variable ended_;
  int underWay_ = 0;
  /// Of those, how many wait for an endpoint.
  int resting_ = 0;
  std::unique_ptr<MHD_Daemon, Stop> daemon_;
};
