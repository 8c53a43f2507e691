#include "platform/termination.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <utility>

namespace {

constexpr std::array kSignals = {SIGTERM, SIGINT, SIGHUP};

/// Read end, write end. A signal handler may touch nothing but such a plain descriptor.
std::array<int, 2> wakePipe = {-1, -1};

void wake(int) {
  // Whatever the handler interrupts may be about to look at its own errno.
  const int interrupted = errno;
  const char byte = 0;
  [[maybe_unused]] const auto written = write(wakePipe[1], &byte, 1);
  errno = interrupted;
}

}  // namespace

TerminationSignals::TerminationSignals() {
  if (pipe(wakePipe.data()) != 0) return;
  for (const int end : wakePipe) {
    fcntl(end, F_SETFD, FD_CLOEXEC);
    fcntl(end, F_SETFL, O_NONBLOCK);
  }
  notifier_ = std::make_unique<QSocketNotifier>(wakePipe[0], QSocketNotifier::Read);
  connect(notifier_.get(), &QSocketNotifier::activated, this, [this] {
    char byte = 0;
    if (read(wakePipe[0], &byte, 1) == 1) Q_EMIT requested();
  });
  for (const int signal : kSignals) std::signal(signal, wake);
}

TerminationSignals::~TerminationSignals() {
  for (const int signal : kSignals) std::signal(signal, SIG_DFL);
  notifier_.reset();
  for (int& end : wakePipe) close(std::exchange(end, -1));
}
