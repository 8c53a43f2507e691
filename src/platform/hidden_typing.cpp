#include "platform/hidden_typing.h"

#include <termios.h>
#include <unistd.h>

#include <array>
#include <csignal>

namespace {

constexpr std::array kSignals = {SIGINT, SIGTERM, SIGHUP, SIGQUIT};

/// As it was before; a signal's handler has no other way to it.
termios shown;

void giveBackAndEnd(int signal) {
  tcsetattr(STDIN_FILENO, TCSANOW, &shown);
  std::signal(signal, SIG_DFL);
  raise(signal);
}

}  // namespace

HiddenTyping::HiddenTyping() : isTerminal_(tcgetattr(STDIN_FILENO, &shown) == 0) {
  if (!isTerminal_) return;
  for (const int signal : kSignals) std::signal(signal, giveBackAndEnd);
  termios hidden = shown;
  hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
  tcsetattr(STDIN_FILENO, TCSAFLUSH, &hidden);
}

HiddenTyping::~HiddenTyping() {
  if (!isTerminal_) return;
  tcsetattr(STDIN_FILENO, TCSANOW, &shown);
  for (const int signal : kSignals) std::signal(signal, SIG_DFL);
}
