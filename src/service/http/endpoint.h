#pragma once

#include <expected>
#include <memory>
#include <string_view>

#include "service/http/message.h"

/// One request at an endpoint: takes its body piece by piece, then answers. Destroyed without a call of `answer` when
/// the client goes away. One thread at a time.
class Exchange {
 public:
  virtual ~Exchange() = default;

  /// What is wrong with the bytes is said by the answer: the rest of the body comes all the same.
  virtual void take(std::string_view bytes) = 0;
  /// Lives on until it has replied.
  virtual void answer(const Reply& reply) = 0;
};

/// What one path answers with one method. Called on any of the server's threads, several at a time.
class Endpoint {
 public:
  enum class Access { open, anyCredential, person };

  virtual ~Endpoint() = default;

  virtual Access access() const = 0;
  /// Whether its answers are small enough for anybody to ask at any rate, such as a health check.
  virtual bool isUnlimited() const { return false; }
  /// The longest body it takes, in bytes; a longer one never reaches it.
  virtual qint64 maximumBody() const { return 0; }
  /// Error: the answer, decided by the head alone.
  virtual std::expected<std::unique_ptr<Exchange>, Response> begin(const Request& request) = 0;
};

/// An endpoint whose bodies are small and whose answers do not wait for anything.
class SimpleEndpoint : public Endpoint {
 public:
  std::expected<std::unique_ptr<Exchange>, Response> begin(const Request& request) final;

  virtual void answer(const Request& request, const QByteArray& body, const Reply& reply) = 0;
};
