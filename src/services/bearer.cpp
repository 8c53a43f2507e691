#include "services/bearer.h"

#include <algorithm>

QByteArray bearer(const QByteArray& credential) {
  const auto isControl = [](char byte) { return static_cast<unsigned char>(byte) < 0x20 || byte == 0x7f; };
  // A line break would begin a header of its own.
  if (credential.isEmpty() || std::ranges::any_of(credential, isControl)) return {};
  return "Bearer " + credential;
}

void addBearer(HttpHeaders& headers, const QByteArray& credential) {
  if (QByteArray value = bearer(credential); !value.isEmpty()) headers.emplace_back("Authorization", std::move(value));
}
