#pragma once

#include <map>

#include "service/http/gate.h"

/// Which endpoint answers a request, and whether it may. Unchanged while the server runs, so that every thread reads
/// it.
class Router {
 public:
  explicit Router(Gate& gate) : gate_(gate) {}

  /// A path that ends in a slash stands for all that begin with it. GET answers HEAD as well.
  void add(const QByteArray& method, const QByteArray& path, std::unique_ptr<Endpoint> endpoint);

  struct Route {
    /// For the log: nothing that a client made up, no link's secret.
    QByteArray label = "?";
    qint64 maximumBody = 0;
    std::expected<std::unique_ptr<Exchange>, Response> exchange;
  };
  /// Decided by the head of a request alone, before any of its body is taken. Sets the caller.
  Route find(Request& request) const;

 private:
  using Methods = std::map<QByteArray, std::unique_ptr<Endpoint>>;

  const std::pair<const QByteArray, Methods>* lookUp(const QByteArray& path) const;
  std::expected<std::unique_ptr<Exchange>, Response> begin(Endpoint& endpoint, Request& request) const;

  Gate& gate_;
  std::map<QByteArray, Methods> byPath_;
};
