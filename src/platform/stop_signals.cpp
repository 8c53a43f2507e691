#include "platform/stop_signals.h"

#include <array>

namespace {

constexpr std::array kSignals = {SIGINT, SIGTERM, SIGHUP};
/// Sent to the waiting thread alone, to end it.
constexpr int kEnd = SIGUSR1;

bool isIgnored(int signal) {
  struct sigaction action{};
  return sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

}  // namespace

StopSignals::StopSignals() {
  sigemptyset(&signals_);
  sigaddset(&signals_, kEnd);
  for (const int signal : kSignals)
    if (!isIgnored(signal)) sigaddset(&signals_, signal);
  pthread_sigmask(SIG_BLOCK, &signals_, &before_);
  waiting_ = std::thread([this] { wait(); });
}

StopSignals::~StopSignals() {
  isEnding_ = true;
  pthread_kill(waiting_.native_handle(), kEnd);
  waiting_.join();
  pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

void StopSignals::wait() {
  while (!isEnding_) {
    int signal = 0;
    if (sigwait(&signals_, &signal) != 0 || signal == kEnd) continue;
    taken_ = signal;
    stop_.request_stop();
  }
}
