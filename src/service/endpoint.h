#pragma once

#include "service/message.h"

/// What one path answers with one method. Called on any of the server's threads, several at a time.
class Endpoint {
 public:
  virtual ~Endpoint() = default;

  /// Whether it answers without a credential.
  virtual bool isOpen() const { return false; }
  /// The longest body it takes, in bytes; a longer one never reaches it.
  virtual qsizetype maximumBody() const { return 0; }
  virtual Response answer(const Request& request) = 0;
};
