#pragma once

#include <QString>

/// The general pasteboard (the clipboard). As it stands, of a system without one. Main thread only.
class Pasteboard {
 public:
  virtual ~Pasteboard() = default;

  /// Replaces what it holds by plain text.
  virtual void writeText([[maybe_unused]] const QString& text) {}
};
