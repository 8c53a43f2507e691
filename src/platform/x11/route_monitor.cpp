#include "platform/x11/route_monitor.h"

#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <optional>
#include <span>

namespace {

/// The kernel fills at most this much into one answer (NLMSG_GOODSIZE and dumps of 32 KiB).
constexpr std::size_t kAnswerSize = 32768;
/// For an answer that never comes; the kernel's takes microseconds.
constexpr timeval kPatience{.tv_sec = 1, .tv_usec = 0};

class Socket {
 public:
  explicit Socket(int descriptor) : descriptor_(descriptor) {}
  ~Socket() {
    if (descriptor_ >= 0) close(descriptor_);
  }
  Socket(const Socket&) = delete;
  Socket& operator=(const Socket&) = delete;
  int descriptor() const { return descriptor_; }

 private:
  int descriptor_;
};

bool isDefaultRoute(const rtmsg& route) {
  return route.rtm_dst_len == 0 && route.rtm_table == RT_TABLE_MAIN && route.rtm_type == RTN_UNICAST &&
         (route.rtm_flags & RTNH_F_DEAD) == 0;
}

bool askForRoutes(int descriptor) {
  struct {
    nlmsghdr head;
    rtmsg route;
  } request{};
  request.head.nlmsg_len = sizeof request;
  request.head.nlmsg_type = RTM_GETROUTE;
  request.head.nlmsg_flags = NLM_F_REQUEST | NLM_F_DUMP;
  request.route.rtm_family = AF_UNSPEC;
  return send(descriptor, &request, sizeof request, 0) == sizeof request;
}

/// What one datagram of a dump says: true or false once it is known, nothing while the dump goes on.
std::optional<bool> findDefaultRoute(std::span<const std::byte> datagram) {
  while (datagram.size() >= sizeof(nlmsghdr)) {
    const auto& head = *reinterpret_cast<const nlmsghdr*>(datagram.data());
    if (head.nlmsg_type == NLMSG_DONE) return false;
    if (head.nlmsg_type == NLMSG_ERROR || head.nlmsg_len > datagram.size()) return true;
    if (head.nlmsg_type == RTM_NEWROUTE && head.nlmsg_len >= sizeof(nlmsghdr) + sizeof(rtmsg) &&
        isDefaultRoute(*reinterpret_cast<const rtmsg*>(datagram.data() + sizeof(nlmsghdr))))
      return true;
    const std::size_t step = std::max<std::size_t>(NLMSG_ALIGN(head.nlmsg_len), sizeof(nlmsghdr));
    datagram = datagram.subspan(std::min(step, datagram.size()));
  }
  return {};
}

}  // namespace

RouteMonitor::RouteMonitor() : socket_(socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC | SOCK_NONBLOCK, NETLINK_ROUTE)) {
  sockaddr_nl address{};
  address.nl_family = AF_NETLINK;
  address.nl_groups = RTMGRP_LINK | RTMGRP_IPV4_ROUTE | RTMGRP_IPV6_ROUTE;
  if (socket_ < 0 || bind(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) return;
  close(socket_);
  socket_ = -1;
}

RouteMonitor::~RouteMonitor() {
  if (socket_ >= 0) close(socket_);
}

void RouteMonitor::drain() {
  std::array<std::byte, kAnswerSize> buffer;
  // Losing some of it (ENOBUFS) is news like any other.
  while (recv(socket_, buffer.data(), buffer.size(), 0) > 0 || errno == ENOBUFS || errno == EINTR) {
  }
}

bool hasDefaultRoute() {
  const Socket dump(socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_ROUTE));
  setsockopt(dump.descriptor(), SOL_SOCKET, SO_RCVTIMEO, &kPatience, sizeof kPatience);
  if (!askForRoutes(dump.descriptor())) return true;
  alignas(nlmsghdr) std::array<std::byte, kAnswerSize> buffer;
  for (;;) {
    const auto size = recv(dump.descriptor(), buffer.data(), buffer.size(), 0);
    if (size <= 0) return true;
    if (const auto known = findDefaultRoute(std::span(buffer).first(static_cast<std::size_t>(size)))) return *known;
  }
}
