#pragma once

#include <optional>

#include "service/http/message.h"

/// How links of this service begin, without a slash at the end.
class PublicAddress {
 public:
  /// `configured`: the public URL; empty: none.
  explicit PublicAddress(const QByteArray& configured) : configured_(configured) {}

  /// The host that the client named serves only on this computer itself: anywhere else anybody could have made it up.
  std::optional<QByteArray> of(const Request& request) const;

 private:
  QByteArray configured_;
};
