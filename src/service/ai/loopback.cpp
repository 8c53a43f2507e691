#include "service/ai/loopback.h"

#include <arpa/inet.h>

bool isLoopback(const QUrl& url) {
  const QByteArray host = url.host().toLatin1();
  if (host == "localhost" || host == "::1") return true;
  in_addr address{};
  constexpr unsigned kFirstByte = 24;
  constexpr unsigned kLoopbackNet = 127;
  return inet_pton(AF_INET, host.constData(), &address) == 1 && ntohl(address.s_addr) >> kFirstByte == kLoopbackNet;
}
