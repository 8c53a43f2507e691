#pragma once

/// While it lives, the terminal at standard input does not show what is typed; a signal that ends the process gives it
/// back first. Does nothing where there is no terminal. One at a time.
class HiddenTyping {
 public:
  HiddenTyping();
  ~HiddenTyping();
  HiddenTyping(const HiddenTyping&) = delete;
  HiddenTyping& operator=(const HiddenTyping&) = delete;

  bool isTerminal() const { return isTerminal_; }

 private:
  bool isTerminal_;
};
