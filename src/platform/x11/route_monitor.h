#pragma once

/// The kernel's routing tables. Not bound to a thread.
class RouteMonitor {
 public:
  RouteMonitor();
  ~RouteMonitor();
  RouteMonitor(const RouteMonitor&) = delete;
  RouteMonitor& operator=(const RouteMonitor&) = delete;

  /// Readable when links or routes have changed; -1 when the kernel does not tell.
  int descriptor() const { return socket_; }
  /// Reads off what the kernel has told. What it says is of no use: a link that goes down takes its routes along
  /// without a word about them.
  void drain();

 private:
  int socket_;
};

/// Whether the main table has a way to anywhere, IPv4 or IPv6. True when the kernel does not
/// answer: nothing is held back then.
bool hasDefaultRoute();
