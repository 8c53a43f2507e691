#include "service/links/public_address.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::array<QByteArrayView, 3> kLoopback = {"127.0.0.1", "localhost", "[::1]"};

bool isLoopback(const QByteArray& host) {
  const auto colon = host.lastIndexOf(':');
  const bool hasPort = colon > host.lastIndexOf(']');
  const QByteArrayView port = hasPort ? QByteArrayView(host).sliced(colon + 1) : QByteArrayView();
  const QByteArrayView name = hasPort ? QByteArrayView(host).first(colon) : QByteArrayView(host);
  return std::ranges::find(kLoopback, name) != kLoopback.end() &&
         std::ranges::all_of(port, [](char c) { return c >= '0' && c <= '9'; });
}

}  // namespace

std::optional<QByteArray> PublicAddress::of(const Request& request) const {
  if (!configured_.isEmpty()) return configured_;
  const QByteArray host = request.header("host").toLower();
  if (!isLoopback(host)) return {};
  return "http://" + host;
}
