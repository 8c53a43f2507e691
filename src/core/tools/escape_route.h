#pragma once

#include <QString>

#include "platform/key_target.h"

/// Escape for what is awaited without a window of its own. The key is the program's in front as well and means
/// something else elsewhere, so it counts only where the user was when it began.
class EscapeRoute {
 public:
  explicit EscapeRoute(const KeyTargets& targets) : targets_(targets) {}

  /// Where the user is now.
  KeyTarget here() const { return targets_.current(); }
  /// Calls `escaped` at the first Escape in `where`, until `close`. What a toast says of the ways to cancel it, of
  /// which a click is one: Escape cannot be seen everywhere.
  QString open(KeyTarget where, std::function<void()> escaped);
  void close() { watch_.reset(); }

 private:
  const KeyTargets& targets_;
  std::unique_ptr<EscapeWatch> watch_;
};
