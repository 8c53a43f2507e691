#pragma once

#include "service/http/endpoint.h"

/// Decides by the head of a request whether it goes on, and in whose name. Any thread.
class Gate {
 public:
  virtual ~Gate() = default;

  /// Error: the refusal.
  virtual std::expected<Caller, Response> admit(const Request& request, Endpoint::Access access) = 0;
};
