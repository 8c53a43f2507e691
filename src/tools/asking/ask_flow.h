#pragma once

#include "core/hotkeys/key_press.h"

/// What the panel of a conversation has of its controller. Main thread only.
class AskFlow {
 public:
  virtual ~AskFlow() = default;

  /// Whether the key was used.
  virtual bool handleKey(const KeyPress& key) = 0;
  virtual void submit() = 0;
  /// Breaks off what is under way, and forgets what was said.
  virtual void startOver() = 0;
  /// False without an answer.
  virtual bool copyLatestAnswer() = 0;
  virtual void copy(const QString& text) = 0;
};
