#pragma once

#include <map>
#include <memory>

#include "service/bearer_check.h"
#include "service/endpoint.h"

/// Which endpoint answers a request, and whether it may. Unchanged while the server runs, so that every thread reads
/// it.
class Router {
 public:
  explicit Router(BearerCheck bearer) : bearer_(std::move(bearer)) {}

  void add(const QByteArray& method, const QByteArray& path, std::unique_ptr<Endpoint> endpoint);

  struct Route {
    /// Null: `refusal` is the answer.
    Endpoint* endpoint = nullptr;
    Response refusal;
  };
  /// Decided by the head of a request alone, before any of its body is taken.
  Route find(const QByteArray& method, const QByteArray& path, const QByteArray& authorization) const;

 private:
  BearerCheck bearer_;
  std::map<QByteArray, std::map<QByteArray, std::unique_ptr<Endpoint>>> byPath_;
};
